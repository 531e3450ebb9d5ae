#include "address/Literals.h"

#include <gtest/gtest.h>

#include <string_view>

#include "strings/SFixedString.h"
#include "support/ExactInput.h"

namespace {

struct Row {
  const char* what;
  std::string_view text;
  bool valid;
};

TEST(Literals, AreIPv4Addresses) {
  const Row rows[] = {
      {"plain", "[1.2.3.4]", true},
      {"zeros", "[0.0.0.0]", true},
      {"highest", "[255.255.255.255]", true},
      {"leading zeros", "[010.0.0.1]", true},
      {"many leading zeros", "[0000000000000000000000255.0.0.1]", true},
      {"three numbers", "[1.2.3]", false},
      {"five numbers", "[1.2.3.4.5]", false},
      {"256 last", "[1.2.3.256]", false},
      {"256 first", "[256.2.3.4]", false},
      {"2 to the 32nd", "[4294967296.2.3.4]", false},
      {"very high", "[1.2.3.99999999999999999999999999999999]", false},
      {"empty number", "[1..2.3]", false},
      {"empty first number", "[.1.2.3]", false},
      {"empty last number", "[1.2.3.]", false},
      {"dots alone", "[...]", false},
      {"letters", "[a.b.c.d]", false},
      {"hexadecimal", "[0x1.2.3.4]", false},
      {"exponent", "[1e1.2.3.4]", false},
      {"sign", "[+1.2.3.4]", false},
      {"minus", "[1.2.3.-4]", false},
      {"blank", "[1.2. 3.4]", false},
      {"no brackets", "1.2.3.4", false},
      {"no opening bracket", "1.2.3.4]", false},
      {"no closing bracket", "[1.2.3.4", false},
      {"text behind", "[1.2.3.4]x", false},
      {"text before", "x[1.2.3.4]", false},
      {"two closing brackets", "[1.2.3.4]]", false},
      {"NUL", std::string_view("[1.2.3.4\0]", 10), false},
      {"high digit", "[1.2.3.\xB4]", false},
      {"brackets alone", "[]", false},
      {"opening bracket alone", "[", false},
      {"closing bracket alone", "]", false},
      {"empty", "", false},
  };
  for (const Row& row : rows) {
    const ExactInput input(row.text);
    SFixedString fixed(input.Data(), input.Length());
    EXPECT_EQ(IsValidLiteral(fixed), row.valid) << row.what;
  }
  EXPECT_FALSE(IsValidLiteral(SString()));
}

}  // namespace
