// The process: its environment, where the settings of the library are kept, its id, what
// happens when memory is exhausted, and what the system's error numbers mean.
//
//   if (GetEnv("ModuleName") == "") PutEnv("ModuleName", "mailer");

#ifndef MAILHEARTH_SYSTEM_ENVIRONMENT_H
#define MAILHEARTH_SYSTEM_ENVIRONMENT_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the value of an environment variable. One that is not set reads as one that is
// empty: the defined empty string.
[[nodiscard]] MAILHEARTH_EXPORT SString GetEnv(const char* key);
[[nodiscard]] MAILHEARTH_EXPORT SString GetEnv(const SString& key);

// Sets an environment variable. The environment keeps pointing at the text, so it is
// never freed: each call costs its length for good. Failure, also for want of
// memory, sets nothing and goes unreported.
MAILHEARTH_EXPORT void PutEnv(const SString& key, const SString& value);

// Returns this process's id in decimal.
[[nodiscard]] MAILHEARTH_EXPORT SString ProcessIdString();

// Makes NewHandler the handler of failed allocations.
MAILHEARTH_EXPORT void SetNewHandler();

// Ends the process at once with status 106: no message, no stream flushed, no destructor.
[[noreturn]] MAILHEARTH_EXPORT void NewHandler();

// Return the current error number, of system and of socket calls.
[[nodiscard]] MAILHEARTH_EXPORT int GetErrorNo();
[[nodiscard]] MAILHEARTH_EXPORT int GetSocketErrorNo();

// Return the system's description of error `n`, of the current one when `n` is -1. errno
// stays as it is.
[[nodiscard]] MAILHEARTH_EXPORT SString GetErrorString(int n = -1);
[[nodiscard]] MAILHEARTH_EXPORT SString GetSocketErrorString(int n = -1);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_ENVIRONMENT_H
