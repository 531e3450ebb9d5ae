// Files by their paths: removing, renaming, linking, copying; whole contents read and
// written.
//
// Where nothing else is said, 1 means done, and 0 not done, errno then being that of the call
// that failed first. Nothing is thrown: memory that runs out is a failure like others (ENOMEM),
// after an installed new-handler has had its turn. An undefined path is the empty one, which names
// nothing (ENOENT); the system reads a path up to its first NUL. No descriptor is left open, and
// none is seen by a program that another part of the process starts.
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

// Removes anything but a directory or a link to one (EISDIR); of another link, the link.
MAILHEARTH_EXPORT int RemoveFile(const SString& path);

// The same. Where a regular file stays, a line goes to the log stream (std::clog), in one
// piece: the time, the value of ModuleName, ERROR, what was tried and the system's reason,
// with colons between them; no line where memory runs out for it.
MAILHEARTH_EXPORT int RemoveFileLogged(const SString& path);

// Closes a descriptor. It is gone even when the answer is 0.
MAILHEARTH_EXPORT int CloseFile(int fd);

// Renames a file or directory; what was at `to` is replaced in the same moment.
MAILHEARTH_EXPORT int Rename(const SString& from, const SString& to);

// Makes `to` another name of the file at `from`, which must not be a directory (EPERM);
// nothing may be at `to` (EEXIST).
MAILHEARTH_EXPORT int LinkFile(const SString& from, const SString& to);

// Copies a file over what is at `to`, or to a new file. The copy has the permissions of the
// source, without set-user-ID and set-group-ID, and its owner and group as far as the process
// may give them. The last argument is ignored.
//
// Success means that as many bytes were read as the source had at the beginning; with fewer
// or more, and no call that failed, errno is EIO. On failure there is no file at `to`, unless
// the source could not be opened or `to` not be written, when nothing has changed.
//
// Known and kept: a write that fails is not noticed, so on a full disk the copy is short; and
// a file copied onto itself is lost.
MAILHEARTH_EXPORT int CopyFile(const SString& from, const SString& to, unsigned int mode = 0);

// Returns the contents of a regular file, all of them or, on failure, an undefined string: of
// a directory with EISDIR, of anything else that is no file with EINVAL, of a file too long
// for a string with EFBIG, of one that does not fit into memory with ENOMEM, of one that becomes
// shorter while it is read with EIO. Does not wait for the writer of a pipe.
[[nodiscard]] MAILHEARTH_EXPORT SString MapFileRead(const SString& path);

// Makes a new file that holds `data`, for the user and the group as far as the umask lets
// them; its bytes are on the disk when the answer is 1. A file that exists is left as it is
// (EEXIST), so of several writers of one name one succeeds. Any other failure, such as that of a
// full disk (ENOSPC), leaves no file.
[[nodiscard]] MAILHEARTH_EXPORT int MapFileWrite(const SString& path, const SString& data);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_FILEOPERATIONS_H
