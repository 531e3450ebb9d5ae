// Files by path: remove, rename, link, copy; read and write whole contents.
//
// Unless a comment says otherwise, a result of 1 means done, and 0 means not done, with errno
// from the call that failed first. Nothing is thrown: when memory runs out, an installed
// new-handler is called, and then the call fails (ENOMEM). An undefined path counts as the
// empty path, which names nothing (ENOENT); the system reads a path up to its first NUL. No
// descriptor stays open, and programs that the process starts inherit none.
//
//   if (!MapFileWrite(path + ".temp", text)) return 0;   // never over an existing file
//   return Rename(path + ".temp", path);
//
//   const SString text = MapFileRead(path);
//   if (!text.Defined()) Complain(GetErrorString());      // an empty file is defined

#ifndef MAILHEARTH_SYSTEM_FILEOPERATIONS_H
#define MAILHEARTH_SYSTEM_FILEOPERATIONS_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Removes anything but a directory or a link to one (EISDIR). Of any other link, removes the
// link itself.
MAILHEARTH_EXPORT int RemoveFile(const SString& path);

// The same. If a regular file could not be removed, writes a line to the log stream
// (std::clog), in one piece: the time, the value of ModuleName, ERROR, the attempt and the
// system's reason, separated by colons. Writes no line if memory runs out for it.
MAILHEARTH_EXPORT int RemoveFileLogged(const SString& path);

// Closes a descriptor. The descriptor is gone even if the result is 0.
MAILHEARTH_EXPORT int CloseFile(int fd);

// Renames a file or directory, atomically replacing the one at `to`, if there is one.
[[nodiscard]] MAILHEARTH_EXPORT int Rename(const SString& from, const SString& to);

// Makes `to` another name of the file at `from`, which must not be a directory (EPERM). `to`
// must not exist (EEXIST).
[[nodiscard]] MAILHEARTH_EXPORT int LinkFile(const SString& from, const SString& to);

// Copies a file over the file at `to`, or to a new file. The copy has the permissions of the
// source, without set-user-ID and set-group-ID, and its owner and group as far as the process
// may set them. The last argument is ignored.
//
// Success means that the number of bytes read is the size that the source had at the
// beginning. If there were fewer or more bytes and no call failed, errno is EIO. On failure
// there is no file at `to`, unless the source or `to` could not be opened; then nothing has
// changed.
//
// Known and kept: failed writes are not noticed, so on a full disk the copy is short; and a
// file copied onto itself is lost.
[[nodiscard]] MAILHEARTH_EXPORT int CopyFile(const SString& from, const SString& to,
                                             unsigned int mode = 0);

// Returns the whole contents of a regular file; on failure an undefined string, with errno
//
//   EISDIR  for a directory
//   EINVAL  for anything else that is not a regular file
//   EFBIG   for a file longer than a string can be
//   ENOMEM  for a file that does not fit into memory
//   EIO     for a file that becomes shorter while it is read
//
// or another of the system. Does not wait for the writer of a pipe.
[[nodiscard]] MAILHEARTH_EXPORT SString MapFileRead(const SString& path);

// Makes a new file that holds `data`, readable and writable for user and group as far as the
// umask permits. When the result is 1, the bytes are on the disk. An existing file is left as
// it is (EEXIST), so of several writers of one name one succeeds. Any other failure, such as a
// full disk (ENOSPC), leaves no file.
[[nodiscard]] MAILHEARTH_EXPORT int MapFileWrite(const SString& path, const SString& data);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_FILEOPERATIONS_H
