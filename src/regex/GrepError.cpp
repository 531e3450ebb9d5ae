#include "GrepError.h"

#include <iterator>
#include <ostream>

#include "../strings/StandardError.h"

inline namespace mailhearth {

void GrepError(int code, const SString& test) {
  constexpr const char* kReasons[] = {nullptr, "Grep called without a valid test field.\n",
                                      "Unknown test type for Grep function\n",
                                      "Incomplete expression in Grep function call\n"};
  SString report;
  if (code > 0 && code < static_cast<int>(std::size(kReasons))) report += kReasons[code];
  ((report += "The test field for Grep was '") += test) += "'\n";
  report.Write(StandardError());
}

}  // namespace mailhearth
