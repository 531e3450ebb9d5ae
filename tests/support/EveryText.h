// Every text of some bytes, for tests of rules that a few bytes show.

#ifndef MAILHEARTH_TESTS_SUPPORT_EVERYTEXT_H
#define MAILHEARTH_TESTS_SUPPORT_EVERYTEXT_H

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

// Calls `use` with every text of up to `longest` of the bytes, until a test fails fatally.
template <class Use>
void ForEveryText(std::string_view bytes, std::size_t longest, Use use) {
  std::size_t texts = 1;
  for (std::size_t length = 0; length <= longest; ++length, texts *= bytes.size()) {
    for (std::size_t number = 0; number < texts; ++number) {
      std::string text;
      for (std::size_t rest = number; text.size() < length; rest /= bytes.size()) {
        text += bytes[rest % bytes.size()];
      }
      use(text);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

#endif  // MAILHEARTH_TESTS_SUPPORT_EVERYTEXT_H
