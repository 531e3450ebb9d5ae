// What an expression says of itself.

#ifndef MAILHEARTH_TESTS_SUPPORT_REGEXDEBUG_H
#define MAILHEARTH_TESTS_SUPPORT_REGEXDEBUG_H

#include <string>

#include "regex/SRegex.h"
#include "support/ErrorText.h"

inline std::string DebugText(const SRegex& re) {
  return ErrorText([&] { re.Debug(); });
}

#endif  // MAILHEARTH_TESTS_SUPPORT_REGEXDEBUG_H
