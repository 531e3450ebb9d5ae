// Checks a string's bytes, and all that the type promises beside them.

#ifndef MAILHEARTH_TESTS_SUPPORT_CHECKTEXT_H
#define MAILHEARTH_TESTS_SUPPORT_CHECKTEXT_H

#include <gtest/gtest.h>

#include <string_view>

#include "strings/SString.h"
#include "support/SStringPeek.h"

// Checks that the string is defined and holds these bytes.
inline void CheckText(const SString& s, std::string_view bytes) {
  EXPECT_STREQ(Flaw(s), "");
  EXPECT_TRUE(s.Defined());
  EXPECT_EQ(s.View(), bytes);
}

inline void CheckUndefined(const SString& s) {
  EXPECT_STREQ(Flaw(s), "");
  EXPECT_FALSE(s.Defined());
  EXPECT_EQ(s.Length(), 0);
}

#endif  // MAILHEARTH_TESTS_SUPPORT_CHECKTEXT_H
