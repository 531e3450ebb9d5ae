// SControl stands for one message in the queue: an SField that tells what is to become of it, in
// a file called its control file. It knows where the queue keeps a message, stamps a trace of
// each module that writes it, defers, links and removes the message, and tells the dispatcher
// that it waits.
//
//   SControl record("20261105080703.1234");      // an id
//   if (!record.Read()) Complain(GetErrorString());
//   record["Function:"] = "Local-Delivery";
//   if (!record.Write()) Complain(GetErrorString());
//   record.Notify();
//
// Below the directory that Mailhearth names, a message has its control file in control/ID-Control
// and its text in messages/ID-Header and messages/ID-Body; deferred by a module, its control
// file is in deferred/MODULE/, or in a directory of a host below that. docs/queue.md tells what
// states a message goes through.
//
// The environment is read when a record is made (Mailhearth, ModuleName) and when it is
// announced (DispatchSocket, DispatchKey).
//
// 1 means done, and 0 not done, errno then being that of the call that failed first.
// Nothing is printed and nothing locked.
//
// Ids, hosts and sub-directories become parts of paths as they stand, so "../x" leads out of
// the queue: ask IsPathComponent (PathComponent.h) of what comes from outside. IsFieldValue
// (FieldValue.h) tells whether a value stored in the record reads back as it is.

#ifndef MAILHEARTH_QUEUE_SCONTROL_H
#define MAILHEARTH_QUEUE_SCONTROL_H

#include "../strings/Export.h"
#include "../strings/SString.h"
#include "SField.h"
#include "SModule.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SControl : public SField {
 public:
  // An empty record without a file. Names of fields compare exactly, lines end in "\n".
  SControl();

  // The same with the file that PutFilename(name) gives it.
  explicit SControl(const SString& name);

  SControl(const SControl& other) = default;

  // Takes over what the assignment of an SField does, and the module.
  SControl& operator=(const SControl& other);
  ~SControl() override;

  // Returns the id: the last part of the file name, without "-Control".
  [[nodiscard]] SString GetFilename() const override;

  // Sets the file: an id gives that in the control directory, a name with a slash in it is
  // the path itself, wherever that leads (IsPathComponent).
  void PutFilename(const SString& name) override;

  // Return the paths of the message's files.
  [[nodiscard]] SString GetControlFilename() const;
  [[nodiscard]] SString GetHeaderFilename() const;
  [[nodiscard]] SString GetBodyFilename() const;

  // Read as an SField does; a name is that of PutFilename.
  [[nodiscard]] int Read() override;
  [[nodiscard]] int Read(const SString& name) override;

  // Add a trace and write as an SField does; a name is that of PutFilename. The trace stays
  // in the record also where the file could not be written.
  [[nodiscard]] int Write() override;
  [[nodiscard]] int Write(const SString& name) override;

  // Takes the name and the directories of a module in place of those of the environment. The
  // file stays.
  // Needs: `module` is not null.
  void SetModule(const SModule* module);

  // Appends the module's name to the values of "Trace:", which becomes the last field. When
  // memory runs out the field may be lost.
  void AddTrace();

  // Returns how many values of "Trace:" are the module's name.
  [[nodiscard]] int GetTraceCount() const;

  // Moves the control file into the module's directory of deferred messages, or a directory
  // below it that the first value of "Host-To:" names; missing directories are made. The
  // value is used as it stands (IsPathComponent). The record goes on naming the file where it
  // was. On failure the file has not moved, but directories may have been made.
  [[nodiscard]] int Defer();

  // The same for a sub-directory, which ends in a slash. Known and kept: without the slash
  // its last part becomes the beginning of the file's name.
  [[nodiscard]] int Defer(const SString& subdir);

  // Removes the message's files: that in the control directory only if the record has been
  // read or written. Fails when that could not be removed, or one of header and body; where
  // neither could, they count as gone before.
  int RemoveMessage();

  // Gives the header and the body another name each, of the id `newId` (IsPathComponent),
  // which must not have any. The control file keeps its one name. Makes both links or none.
  [[nodiscard]] int LinkMessage(const SString& newId) const;

  // Sends the dispatcher, which listens on port DispatchSocket of the loopback address, one
  // datagram: on a line each the id, the value of DispatchKey and the first values of
  // "Function:", "Control-Type:" and "Priority:", without a last line end; line ends within
  // a value are sent as they are. Answers whether it was sent; nobody tells whether it
  // arrived. Without a key or a port from 1 to 65536 errno is EINVAL.
  int Notify() const;

 protected:
  // Returns the first value of a field, an undefined string when it has none.
  [[nodiscard]] SString _First(const SString& field) const { return Get(field).Get(0); }

 private:
  // Returns the path of a file of the message `id`.
  [[nodiscard]] SString _HeaderOf(const SString& id) const;
  [[nodiscard]] SString _BodyOf(const SString& id) const;

  SString moduleName_, controlDir_, deferredDir_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SCONTROL_H
