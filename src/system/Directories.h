// Directories: list, make, remove, sync, change to.
//
// Unless a comment says otherwise, a result of 1 means done, and 0 means not done, with the
// reason in errno. Nothing is thrown: when memory runs out, the call fails (ENOMEM). A link to
// a directory counts as a directory. An undefined path counts as the empty path, which names
// nothing (ENOENT); the system reads a path up to its first NUL.
//
//   if (!MakeDir(root + "/deferred/" + module, 0750)) Complain(GetErrorString());
//   for (const SString& path : ReadDir(root + "/control")) Consume(path);

#ifndef MAILHEARTH_SYSTEM_DIRECTORIES_H
#define MAILHEARTH_SYSTEM_DIRECTORIES_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the paths of the entries except "." and "..", in the order of the system: `dir`, a
// slash and the name, with every run of slashes replaced by one.
//
// Returns an undefined list when the directory cannot be opened, with errno from the system,
// and when memory runs out (ENOMEM); if there is no memory even for an undefined list, throws
// std::bad_alloc. An empty directory gives a defined list without elements. If reading fails
// before the end, the list holds the entries read so far and errno has the error; after a
// complete list errno is 0.
[[nodiscard]] MAILHEARTH_EXPORT SStringList ReadDir(const SString& dir);

// Makes one directory, with `mode` less the bits of the process's umask.
[[nodiscard]] MAILHEARTH_EXPORT int CreateDirectory(const SString& path, unsigned long mode);

// Makes `path` and every missing parent directory, all with `mode` less the umask. Returns
// whether `path` is a directory afterwards, even if it was one before. Any number of processes
// may make the same path at the same time. On failure, directories already made stay.
[[nodiscard]] MAILHEARTH_EXPORT int MakeDir(const SString& path, unsigned long mode);

// Removes an empty directory. One slash at the end of `path` is ignored. A link to a directory
// is refused (ENOTDIR).
MAILHEARTH_EXPORT int RemoveDir(const SString& path);

// Writes the entries of a directory to the disk: files made, renamed or removed in it before
// the call remain so after a power cut.
[[nodiscard]] MAILHEARTH_EXPORT int SyncDir(const SString& path);

// Makes `path` the working directory of the process.
[[nodiscard]] MAILHEARTH_EXPORT int Chdir(const SString& path);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DIRECTORIES_H
