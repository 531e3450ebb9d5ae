// A string that views its bytes, with no NUL behind them but other bytes: who takes it for
// a text of the C library reads on.

#ifndef MAILHEARTH_TESTS_SUPPORT_UNENDEDTEXT_H
#define MAILHEARTH_TESTS_SUPPORT_UNENDEDTEXT_H

#include <string>

#include "strings/SFixedString.h"

class UnendedText {
 public:
  explicit UnendedText(const std::string& text)
      : bytes_(text + "-and-more"), view_(bytes_.data(), static_cast<int>(text.size())) {}

  // Must go before the object does.
  [[nodiscard]] SString String() { return view_; }

 private:
  std::string bytes_;
  SFixedString view_;
};

#endif  // MAILHEARTH_TESTS_SUPPORT_UNENDEDTEXT_H
