// SModule is what the queue needs to know of the module that runs: its name and two
// directories, each with a slash at its end. A record takes them over by
// SControl::SetModule; without it they come from the environment.
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
  // `deferredDir` is the directory that has one of each module in it.
  SModule(const SString& name, const SString& controlDir, const SString& deferredDir)
      : name_(name), controlDir_(controlDir), deferredDir_(deferredDir) {}

  // What it was made of.
  [[nodiscard]] const SString& Name() const { return name_; }
  [[nodiscard]] const SString& ControlDir() const { return controlDir_; }
  [[nodiscard]] const SString& DeferredDir() const { return deferredDir_; }

 private:
  SString name_, controlDir_, deferredDir_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_QUEUE_SMODULE_H
