// Linked into every test program: with TEST_LOCALE set, all its tests run in that locale, as
// in a program that has chosen one for its C and C++ library.

#include <gtest/gtest.h>

#include <cstdlib>
#include <locale>

// There where leaks are looked for.
extern "C" {
[[gnu::weak]] void __lsan_disable();
[[gnu::weak]] void __lsan_enable();
}

namespace {

class ProgramLocale : public testing::Environment {
 public:
  void SetUp() override {
    const char* const name = std::getenv("TEST_LOCALE");
    if (name == nullptr) return;
    if (__lsan_disable != nullptr) __lsan_disable();  // the C library keeps a list of paths
    std::locale::global(std::locale(name));
    if (__lsan_enable != nullptr) __lsan_enable();
  }
};

const testing::Environment* const kProgramLocale =
    testing::AddGlobalTestEnvironment(new ProgramLocale);

}  // namespace
