#include "SControl.h"

#include <algorithm>
#include <cerrno>

#include "../system/Directories.h"
#include "../system/Environment.h"
#include "../system/EnvironmentVariables.h"
#include "../system/ErrnoKeeper.h"
#include "../system/FileOperations.h"
#include "Layout.h"
#include "LoopbackSocket.h"

inline namespace mailhearth {

namespace {

// Removes a file; `error` becomes the reason where it cannot, unless there was one before.
// Returns whether it went.
bool Remove(const SString& path, int& error) {
  if (RemoveFile(path)) return true;
  if (error == 0) error = errno;
  return false;
}

}  // namespace

SControl::SControl()
    : SNamedStringList(1, 0),
      SField(1, 0),
      moduleName_(GetEnv(kModuleNameVariable)),
      controlDir_(GetEnv(kRootVariable) + kControlDir),
      deferredDir_(GetEnv(kRootVariable) + kDeferredDir + moduleName_ + "/") {}

SControl::SControl(const SString& name) : SControl() { SControl::PutFilename(name); }

SControl& SControl::operator=(const SControl& other) {
  SField::operator=(other);
  moduleName_ = other.moduleName_;
  controlDir_ = other.controlDir_;
  deferredDir_ = other.deferredDir_;
  return *this;
}

SControl::~SControl() = default;

SString SControl::GetFilename() const { return BaseName(GetControlFilename(), kControlSuffix); }

void SControl::PutFilename(const SString& name) {
  SField::PutFilename(name.Index('/') >= 0 ? name : controlDir_ + name + kControlSuffix);
}

SString SControl::GetControlFilename() const { return SField::GetFilename(); }
SString SControl::GetHeaderFilename() const { return _HeaderOf(GetFilename()); }
SString SControl::GetBodyFilename() const { return _BodyOf(GetFilename()); }

int SControl::Read() { return SField::Read(); }

int SControl::Read(const SString& name) {
  PutFilename(name);
  return Read();
}

int SControl::Write() {
  AddTrace();
  return SField::Write();
}

int SControl::Write(const SString& name) {
  PutFilename(name);
  return Write();
}

void SControl::SetModule(const SModule* module) {
  deferredDir_ = module->DeferredDir() + module->Name() + "/";  // may throw; the rest does not
  moduleName_ = module->Name();
  controlDir_ = module->ControlDir();
}

void SControl::AddTrace() {
  SStringList trace = Get(kTraceField);
  trace.Push(moduleName_);
  Delete(kTraceField);
  (*this)[kTraceField] = trace;  // a new name, so it is the last
}

int SControl::GetTraceCount() const {
  const SStringList trace = Get(kTraceField);
  return static_cast<int>(std::count(trace.begin(), trace.end(), moduleName_));
}

int SControl::Defer() {
  const SString host = _First(kHostToField);
  return Defer(host.Length() > 0 ? host + "/" : host);
}

int SControl::Defer(const SString& subdir) {
  constexpr unsigned long kUserAndGroup = 0770;
  const SString directory = deferredDir_ + subdir;
  const SString target = directory + GetFilename() + kControlSuffix;
  return MakeDir(directory, kUserAndGroup) && Rename(GetControlFilename(), target);
}

int SControl::RemoveMessage() {
  const SString id = GetFilename(), header = _HeaderOf(id), body = _BodyOf(id);
  int error = 0;
  const bool control = Loaded() == 0 || Remove(controlDir_ + id + kControlSuffix, error);
  const bool first = Remove(header, error);
  const bool second = Remove(body, error);
  if (control && first == second) return 1;
  errno = error;
  return 0;
}

int SControl::LinkMessage(const SString& newId) const {
  // All that takes memory comes before the first link.
  const SString header = GetHeaderFilename(), body = GetBodyFilename();
  const SString newHeader = _HeaderOf(newId), newBody = _BodyOf(newId);
  if (!LinkFile(header, newHeader)) return 0;
  if (LinkFile(body, newBody)) return 1;
  const ErrnoKeeper keep;
  static_cast<void>(RemoveFile(newHeader));  // best effort
  return 0;
}

int SControl::Notify() const {
  const int port = PortNumber(GetEnv(kDispatchSocketVariable));
  const SString key = GetEnv(kDispatchKeyVariable);
  if (port < 1 || port > kLastDispatchPort || key.Length() == 0) {
    errno = EINVAL;
    return 0;
  }
  SString text = GetFilename() + "\n" + key;
  for (const char* const field : {kFunctionField, kControlTypeField, kPriorityField}) {
    text += '\n';
    text += _First(field);
  }
  return LoopbackSocket().SendTo(port, text);
}

SString SControl::_HeaderOf(const SString& id) const { return _MessageDir() + id + kHeaderSuffix; }
SString SControl::_BodyOf(const SString& id) const { return _MessageDir() + id + kBodySuffix; }

}  // namespace mailhearth
