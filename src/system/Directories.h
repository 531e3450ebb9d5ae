// Directories: listing, making, removing, syncing, going there.
//
// Where nothing else is said, 1 means done, and 0 not done, errno then telling why. Nothing is
// thrown: memory that runs out is a failure like others (ENOMEM). A directory asked for may be a
// link to one. An undefined path is the empty one, which names nothing (ENOENT); the system reads
// a path up to its first NUL.
//
//   if (!MakeDir(root + "/deferred/" + module, 0750)) Complain(GetErrorString());
//   for (const SString& path : ReadDir(root + "/control")) Consume(path);

#ifndef MAILHEARTH_SYSTEM_DIRECTORIES_H
#define MAILHEARTH_SYSTEM_DIRECTORIES_H

#include "../lists/SStringList.h"
#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the paths of the entries, "." and ".." left out, in the order of the system: `dir`,
// a slash and the name, with every run of slashes made one.
//
// Undefined when the directory cannot be opened, with errno from the system, and when memory
// runs out (ENOMEM); where there is none even for an undefined list, std::bad_alloc is thrown.
// Else defined, without elements for an empty directory. Where reading fails half way, the list
// holds what came before and errno is the error's; after a whole list it is 0.
[[nodiscard]] MAILHEARTH_EXPORT SStringList ReadDir(const SString& dir);

// Makes one directory, with `mode` less the bits of the process's umask.
MAILHEARTH_EXPORT int CreateDirectory(const SString& path, unsigned long mode);

// Makes `path` and every directory missing on the way to it, all with `mode` less the umask.
// Returns whether it is a directory afterwards, be it that it was one before. Any number of
// processes may make the same path at the same time. What was made before a failure stays.
MAILHEARTH_EXPORT int MakeDir(const SString& path, unsigned long mode);

// Removes an empty directory. One slash at the end of `path` does not count. A link to a
// directory is refused (ENOTDIR).
MAILHEARTH_EXPORT int RemoveDir(const SString& path);

// Has the disk hold the entries of a directory as they are now: what was made, renamed or
// removed in it before survives a power cut.
MAILHEARTH_EXPORT int SyncDir(const SString& path);

// Makes `path` the working directory of the process.
MAILHEARTH_EXPORT int Chdir(const SString& path);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_DIRECTORIES_H
