#include "Environment.h"

#include <stdlib.h>  // putenv: POSIX, not in <cstdlib>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "ErrnoKeeper.h"
#include "PathText.h"

inline namespace mailhearth {

namespace {

constexpr int kMemoryExhausted = 106;  // exit status

}  // namespace

SString GetEnv(const char* key) { return key == nullptr ? SString("") : SString(::getenv(key)); }

SString GetEnv(const SString& key) { return GetEnv(Terminated(key).Data()); }

void PutEnv(const SString& key, const SString& value) {
  const auto text = [&] { return (key + "=" + value).GetBuf(); };
  char* const setting = UnlessOutOfMemory(static_cast<char*>(nullptr), text);
  // The environment owns it from here on; nobody is told of a failure.
  if (setting != nullptr) static_cast<void>(::putenv(setting));
}

SString ProcessIdString() { return SString(static_cast<long>(::getpid())); }

void SetNewHandler() { std::set_new_handler(NewHandler); }

void NewHandler() { ::_exit(kMemoryExhausted); }

int GetErrorNo() { return errno; }

int GetSocketErrorNo() { return errno; }

SString GetErrorString(int n) { return GetSocketErrorString(n); }

SString GetSocketErrorString(int n) {
  const ErrnoKeeper keep;  // strerror sets it for numbers it does not know
  return SString(std::strerror(n == -1 ? GetSocketErrorNo() : n));
}

}  // namespace mailhearth
