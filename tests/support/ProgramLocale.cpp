// Linked into every test program: with TEST_LOCALE set, all its tests run in that locale, as
// in a program that has chosen one for its C and C++ library.

#include <gtest/gtest.h>

#include <cstdlib>
#include <locale>

namespace {

class ProgramLocale : public testing::Environment {
 public:
  void SetUp() override {
    const char* const name = std::getenv("TEST_LOCALE");
    if (name != nullptr) std::locale::global(std::locale(name));
  }
};

const testing::Environment* const kProgramLocale =
    testing::AddGlobalTestEnvironment(new ProgramLocale);

}  // namespace
