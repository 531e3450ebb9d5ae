// Plays the edits that the input chooses on strings and on their model.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "support/SStringModel.h"

namespace {

// Turns the bytes of an input into choices, and into 0 when they are used up.
class Choices {
 public:
  explicit Choices(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  [[nodiscard]] bool Empty() const { return bytes_.empty(); }

  int Next(int below) {
    std::uint32_t number = 0;
    for (int limit = below - 1; limit > 0; limit >>= 8) number = number << 8 | Byte();
    return static_cast<int>(number % static_cast<std::uint32_t>(below));
  }

 private:
  std::uint8_t Byte() {
    if (bytes_.empty()) return 0;
    const std::uint8_t byte = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return byte;
  }

  std::span<const std::uint8_t> bytes_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices({data, size});
  mailhearth::SStringModel model([&](int below) { return choices.Next(below); });
  while (!choices.Empty()) {
    if (const std::string difference = model.Step(); !difference.empty()) {
      std::fprintf(stderr, "%s\n", difference.c_str());
      std::abort();
    }
  }
  return 0;
}
