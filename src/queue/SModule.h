// SModule describes the running module to the queue: its name and two directories, each with a
// slash at its end. SControl::SetModule gives them to a record; otherwise they come from the
// environment.
//
//   const SModule module("router", root + "/control/", root + "/deferred/");
//   record.SetModule(&module);

#ifndef MAILHEARTH_QUEUE_SMODULE_H
#define MAILHEARTH_QUEUE_SMODULE_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

class MAILHEARTH_EXPORT SModule {
 public:
  // `deferredDir` is the directory that contains those of all modules.
  SModule(const SString& name, const SString& controlDir, const SString& deferredDir)
      : name_(name), controlDir_(controlDir), deferredDir_(deferredDir) {}

  // The arguments of the constructor.
  [[nodiscard]] const SString& Name() const { return name_; }
  [[nodiscard]] const SString& ControlDir() const { return controlDir_; }
  [[nodiscard]] const SString& DeferredDir() const { return deferredDir_; }

 private:
  SString name_, controlDir_, deferredDir_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SMODULE_H
