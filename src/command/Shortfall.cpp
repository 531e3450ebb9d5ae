#include "Shortfall.h"

#include <charconv>

#include "../system/FileStatus.h"

inline namespace mailhearth {

namespace {

constexpr double kUnit = 1000.0;  // thousands of bytes, not kibibytes
constexpr int kSignificantDigits = 6;

double Doubled(int size) { return static_cast<double>(size << 1); }  // wraps: 32 bits

}  // namespace

double Shortfall(const SString& file) {
  const int size = FileSize(file);
  const double free = FreeDiskSpace(file);
  return (Doubled(size) - free) / kUnit;
}

bool TooFull(const SString& file) {
  const double free = FreeDiskSpace(file);
  const int size = FileSize(file);
  return free < Doubled(size);
}

std::string NumberLine(double number) {
  char text[16];  // "-1.23457e-308" is the longest
  char* const end = std::to_chars(text, text + sizeof text, number, std::chars_format::general,
                                  kSignificantDigits)
                        .ptr;
  return std::string(text, end) + '\n';
}

}  // namespace mailhearth
