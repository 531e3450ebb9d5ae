// SField is a named list with a file: one call reads the list from the file, another replaces
// the file by the list. The text form is that of SNamedStringList.
//
//   SField record(1, 0);                         // names compare exactly, lines end in \n
//   if (!record.Read(path)) Complain(GetErrorString());
//   record["Trace:"].Push("router");
//   if (!record.Write()) Complain(GetErrorString());
//
// To replace a file, Write() writes a new file beside it, whose name has the suffix ".temp",
// and renames that into place. Readers see the old contents or the new ones at any time, even
// if the writer stops. The contents are on the disk before the rename, and the directory is
// synced after it: the result of a successful Write() survives a power cut. If the directory
// cannot be synced, as on some file systems, Write() still succeeds, and a power cut may bring
// back the old contents.
//
// Files are not locked. If two processes write the same file at the same time, the last rename
// wins; a process that finds the other's ".temp" removes it and fails. Let one process at a
// time write a file: if a process tries again, or a third one writes too, one may rename a file
// that another has only begun.
//
// A result of 1 means done. 0 means not done, with errno from the call that failed first. A
// file that does not fit into memory is not read (ENOMEM). If memory runs out for the list of
// a Read() or the text of a Write(), std::bad_alloc is thrown, as by every other edit.
//
// Values are stored as they are. IsFieldValue (FieldValue.h) tells whether a value reads back as
// it was written, and not as more fields.

#ifndef MAILHEARTH_QUEUE_SFIELD_H
#define MAILHEARTH_QUEUE_SFIELD_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "../tables/SNamedStringList.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SField : public virtual SNamedStringList {
 public:
  // An empty list with these two flags and without a file.
  SField(unsigned caseSensitive, unsigned crlf);

  // Copies the list, the file name, Error() and Loaded().
  SField(const SField& other) = default;

  // Assigns the list, the file name and Loaded().
  SField& operator=(const SField& other);
  ~SField() override;

  // The path of the file; empty for none.
  [[nodiscard]] virtual SString GetFilename() const;
  virtual void PutFilename(const SString& name);

  // Replaces the list by the contents of the file; an empty file gives an empty list. Fails
  // when the file cannot be read or is not a regular file, and then leaves the list as it was.
  // Sets Error() to 0. Without a file name errno is ENOENT. When memory runs out for the list,
  // throws std::bad_alloc; the list then holds a part of the file.
  [[nodiscard]] virtual int Read();

  // The same for the file at `name`, which is the record's file from then on.
  [[nodiscard]] virtual int Read(const SString& name);

  // Replaces the file by the list; makes the file if there is none. On failure the file is as
  // it was, and no ".temp" is left, not even one that was there before; but a directory of
  // that name stays. Without a file name, sets Error() to -11 and errno to ENOENT. A name with
  // a NUL in it is refused (EINVAL).
  //
  // All memory is taken before the first file is touched. When memory runs out, throws
  // std::bad_alloc: the file, an old ".temp", the list and Loaded() are as they were. Where
  // the system itself has no memory for a call, the failure is like any other (ENOMEM).
  [[nodiscard]] virtual int Write();

  // The same for the file at `name`, which is the record's file from then on.
  [[nodiscard]] virtual int Write(const SString& name);

  // Does nothing here; a derived class that locks its file overrides it to unlock the file.
  virtual void UnlockFile();

  // The last error, as Read() and Write() set it.
  [[nodiscard]] int Error() const { return error_; }

  // 1 once the record has been read or written, else 0.
  [[nodiscard]] int Loaded() const { return loaded_; }

 protected:
  // Sets the result of Loaded().
  void _PutLoaded(int loaded) { loaded_ = loaded; }

  // The directory of messages, with a slash at its end, below the value that Mailhearth had
  // when this object was made.
  [[nodiscard]] const SString& _MessageDir() const { return messageDir_; }

 private:
  SString filename_;
  int error_ = 0;
  SString messageDir_;
  int loaded_ = 0;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SFIELD_H
