// SControl represents one message in the queue. It is an SField that tells how to process the
// message; its file is called the control file. It knows where the queue keeps a message,
// records a trace of each module that writes it, defers, links and removes the message, and
// notifies the dispatcher that the message waits.
//
//   SControl record("20261105080703.1234");      // an id
//   if (!record.Read()) Complain(GetErrorString());
//   record["Function:"] = "Local-Delivery";
//   if (!record.Write()) Complain(GetErrorString());
//   record.Notify();
//
// Below the directory that Mailhearth names, the control file of a message is
// control/ID-Control, and its text is in messages/ID-Header and messages/ID-Body. If a module
// has deferred the message, its control file is in deferred/MODULE/, or in a directory of a
// host below that. docs/queue.md describes the states of a message.
//
// The environment is read when a record is made (Mailhearth, ModuleName) and when it is
// announced (DispatchSocket, DispatchKey).
//
// A result of 1 means done. 0 means not done, with errno from the call that failed first.
// Members print nothing and lock nothing.
//
// Ids, hosts and sub-directories become parts of paths as they are, so "../x" leads out of
// the queue: check names from outside with IsPathComponent (PathComponent.h). IsFieldValue
// (FieldValue.h) tells whether a value stored in the record reads back as itself.

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

  // An empty record with the file that PutFilename(name) sets.
  explicit SControl(const SString& name);

  SControl(const SControl& other) = default;

  // Assigns the parts that SField assigns, and the module.
  SControl& operator=(const SControl& other);
  ~SControl() override;

  // Returns the id: the last part of the file name, without "-Control".
  [[nodiscard]] SString GetFilename() const override;

  // Sets the file. An id means its file in the control directory; a name with a slash is the
  // path itself, wherever it leads (IsPathComponent).
  void PutFilename(const SString& name) override;

  // Return the paths of the message's files.
  [[nodiscard]] SString GetControlFilename() const;
  [[nodiscard]] SString GetHeaderFilename() const;
  [[nodiscard]] SString GetBodyFilename() const;

  // Read as an SField does; PutFilename interprets the name.
  [[nodiscard]] int Read() override;
  [[nodiscard]] int Read(const SString& name) override;

  // Add a trace and write as an SField does; PutFilename interprets the name. The trace stays
  // in the record even if the file could not be written.
  [[nodiscard]] int Write() override;
  [[nodiscard]] int Write(const SString& name) override;

  // Replaces the name and the directories from the environment by those of a module. The file
  // of the record stays.
  // Needs: `module` is not null.
  void SetModule(const SModule* module);

  // Appends the module's name to the values of "Trace:", which becomes the last field. When
  // memory runs out, throws std::bad_alloc, and the field may be lost.
  void AddTrace();

  // Returns the number of values of "Trace:" that are the module's name.
  [[nodiscard]] int GetTraceCount() const;

  // Moves the control file to the module's directory of deferred messages or, if "Host-To:" has
  // a value, to the directory below it that the first value names; makes missing directories.
  // The value is used as it is (IsPathComponent). The record still names the old file. On
  // failure the file has not moved, but directories may have been made.
  [[nodiscard]] int Defer();

  // The same for a given sub-directory, which ends in a slash. Known and kept: without the
  // slash, its last component becomes the beginning of the file name.
  [[nodiscard]] int Defer(const SString& subdir);

  // Removes the files of the message: header, body and, only if the record has been read or
  // written, the file in the control directory. Fails if that file could not be removed, or
  // only one of header and body; if neither could, they count as removed before.
  int RemoveMessage();

  // Links the header and the body to names of the id `newId` (IsPathComponent), which must have
  // neither file. The control file is not linked. Makes both links or none.
  [[nodiscard]] int LinkMessage(const SString& newId) const;

  // Sends one datagram to the dispatcher, which listens on port DispatchSocket of the loopback
  // address. Its lines are the id, the value of DispatchKey and the first values of
  // "Function:", "Control-Type:" and "Priority:". No line end follows the last line; line ends
  // within a value are sent as they are. Returns whether the datagram was sent, which does not
  // mean that it arrived. Without a key or a port from 1 to 65536 errno is EINVAL.
  int Notify() const;

 protected:
  // Returns the first value of a field, an undefined string when it has none.
  [[nodiscard]] SString _First(const SString& field) const { return Get(field).Get(0); }

 private:
  // Return the paths of the files of the message `id`.
  [[nodiscard]] SString _HeaderOf(const SString& id) const;
  [[nodiscard]] SString _BodyOf(const SString& id) const;

  SString moduleName_, controlDir_, deferredDir_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SCONTROL_H
