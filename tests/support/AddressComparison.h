// One text given to the library's readers of addresses and to the slow ones, which ought to
// agree on every token, part, form and position.
//
//   const AddressComparison path = ComparePath("<joe@example.org>");
//   EXPECT_EQ(path.difference, "");
//
// The library reads the text on a heap block of its own without a NUL.

#ifndef MAILHEARTH_TESTS_SUPPORT_ADDRESSCOMPARISON_H
#define MAILHEARTH_TESTS_SUPPORT_ADDRESSCOMPARISON_H

#include <string>
#include <string_view>

inline namespace mailhearth {

struct AddressComparison {
  std::string difference;  // "" or how the two differ
  bool good;               // whether the text is what is looked for
};

// The tokens of both scanners; good if neither meets an error.
[[nodiscard]] AddressComparison CompareTokens(std::string_view text);

// Two paths of an envelope, strict, lenient and by the scanner of lists, and what follows them;
// good if the first is valid however it is read.
[[nodiscard]] AddressComparison ComparePath(std::string_view text);

// The list of a header; good if it has an address, and no bad one.
[[nodiscard]] AddressComparison CompareList(std::string_view text);

// The text as a whole: as a domain, a label, a literal, a local part to fix and a token's
// text; good if it is a domain.
[[nodiscard]] AddressComparison CompareWhole(std::string_view text);

// The pieces between vertical bars, joined as texts of tokens; good if a space is among them.
[[nodiscard]] AddressComparison CompareJoined(std::string_view text);

// The repair; good if anything is saved.
[[nodiscard]] AddressComparison CompareRepair(std::string_view text);

}  // namespace mailhearth

#endif  // MAILHEARTH_TESTS_SUPPORT_ADDRESSCOMPARISON_H
