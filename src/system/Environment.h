// The process: its environment, which holds the settings of the library, its id, its handler
// for exhausted memory, and the texts of the system's error numbers.
//
//   if (GetEnv("ModuleName") == "") PutEnv("ModuleName", "mailer");

#ifndef MAILHEARTH_SYSTEM_ENVIRONMENT_H
#define MAILHEARTH_SYSTEM_ENVIRONMENT_H

#include "../strings/Export.h"
#include "../strings/SString.h"

inline namespace mailhearth {

// Returns the value of an environment variable; the defined empty string if it is empty or not
// set.
[[nodiscard]] MAILHEARTH_EXPORT SString GetEnv(const char* key);
[[nodiscard]] MAILHEARTH_EXPORT SString GetEnv(const SString& key);

// Sets an environment variable. The environment keeps a pointer to the text, which is never
// freed: each call takes memory of its length for the life of the process. A failure, even for
// lack of memory, sets nothing and is not reported.
MAILHEARTH_EXPORT void PutEnv(const SString& key, const SString& value);

// Returns this process's id in decimal.
[[nodiscard]] MAILHEARTH_EXPORT SString ProcessIdString();

// Installs NewHandler as the handler of failed allocations.
MAILHEARTH_EXPORT void SetNewHandler();

// Ends the process at once with status 106: no message, no stream flushed, no destructor.
[[noreturn]] MAILHEARTH_EXPORT void NewHandler();

// Return the current error number, of system and of socket calls.
[[nodiscard]] MAILHEARTH_EXPORT int GetErrorNo();
[[nodiscard]] MAILHEARTH_EXPORT int GetSocketErrorNo();

// Return the system's description of error `n`, of the current error when `n` is -1. errno
// does not change.
[[nodiscard]] MAILHEARTH_EXPORT SString GetErrorString(int n = -1);
[[nodiscard]] MAILHEARTH_EXPORT SString GetSocketErrorString(int n = -1);

}  // namespace mailhearth

#endif  // MAILHEARTH_SYSTEM_ENVIRONMENT_H
