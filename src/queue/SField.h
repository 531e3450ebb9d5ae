// SField is a named list with a file to it: one call fills the list from the file, another
// replaces the file by the list. The text form is that of SNamedStringList.
//
//   SField record(1, 0);                         // names compare exactly, lines end in \n
//   if (!record.Read(path)) Complain(GetErrorString());
//   record["Trace:"].Push("router");
//   if (!record.Write()) Complain(GetErrorString());
//
// A file is replaced by writing another beside it, named like it with ".temp" behind, and
// renaming that into place. Readers see the old contents or the new ones, whenever they look
// and whenever the writer stops. The contents are on the disk before the rename, and the
// directory is synced after it: what Write() calls written survives a power cut.
//
// Nothing is locked. Of two processes that write the same file at the same time, the one
// whose rename comes last has written it; one that finds the other's ".temp" removes it and
// fails. Let one process at a time write a file: where that one tries again, or a third writes
// too, one may rename what another has only begun.
//
// 1 means done, and 0 not done, errno then being that of the call that failed first.
// A file that does not fit into memory is not read (ENOMEM). Where memory runs out for the
// list, in reading, or for its text, in writing, std::bad_alloc is thrown, as by every other
// edit: a read has then put a part of the file into the list, a write has changed no file.
//
// Values are stored as they are. IsFieldValue (FieldValue.h) tells whether a value reads back as
// it was written, and not as further fields.

#ifndef MAILHEARTH_QUEUE_SFIELD_H
#define MAILHEARTH_QUEUE_SFIELD_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "../tables/SNamedStringList.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SField : public virtual SNamedStringList {
 public:
  // An empty list with these two flags, which has no file.
  SField(unsigned caseSensitive, unsigned crlf);

  // The same list, file and marks.
  SField(const SField& other) = default;

  // Takes over the list, the file name and whether it was read or written.
  SField& operator=(const SField& other);
  ~SField() override;

  // The path of the file; empty for none.
  [[nodiscard]] virtual SString GetFilename() const;
  virtual void PutFilename(const SString& name);

  // Replaces the list by what is in the file. Fails when that is not a regular file, and
  // changes nothing then; an empty file has an empty list. Sets Error() to 0. Without a file
  // name errno is ENOENT.
  [[nodiscard]] virtual int Read();

  // The same for the file at `name`, which is the record's file from then on.
  [[nodiscard]] virtual int Read(const SString& name);

  // Replaces the file by the list, or makes it. On failure the file is as it was, and no
  // ".temp" is left, not even one that was there before; but a directory of that name stays.
  // Without a file name, Error() is set to -11 and errno is ENOENT; a name with a NUL in it
  // is refused (EINVAL).
  [[nodiscard]] virtual int Write();

  // The same for the file at `name`, which is the record's file from then on.
  [[nodiscard]] virtual int Write(const SString& name);

  // Does nothing here; a derived class that locks its file ends the lock.
  virtual void UnlockFile();

  // The last error, as Read() and Write() set it.
  [[nodiscard]] int Error() const { return error_; }

  // 1 once the record has been read or written, else 0.
  [[nodiscard]] int Loaded() const { return loaded_; }

 protected:
  // Sets what Loaded() answers.
  void _PutLoaded(int loaded) { loaded_ = loaded; }

  // The directory of messages below the value that Mailhearth had when this object was made,
  // a slash at its end.
  [[nodiscard]] const SString& _MessageDir() const { return messageDir_; }

 private:
  SString filename_;
  int error_ = 0;
  SString messageDir_;
  int loaded_ = 0;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SFIELD_H
