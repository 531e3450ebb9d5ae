// What the C library prints of one value in the C locale, whatever the program's locale.

#ifndef MAILHEARTH_TESTS_SUPPORT_CFORMAT_H
#define MAILHEARTH_TESTS_SUPPORT_CFORMAT_H

#include <array>
#include <clocale>
#include <cstdio>
#include <string>

template <class Value>
std::string CFormat(const char* format, Value value) {
  const locale_t c = ::newlocale(LC_ALL_MASK, "C", nullptr);
  const locale_t before = ::uselocale(c);
  std::array<char, 512> text;
  std::snprintf(text.data(), text.size(), format, value);
  ::uselocale(before);
  ::freelocale(c);
  return text.data();
}

#endif  // MAILHEARTH_TESTS_SUPPORT_CFORMAT_H
