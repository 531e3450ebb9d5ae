#include "Random.h"

#include <unistd.h>

#include <cstdint>
#include <ctime>

#include "StartUp.h"

inline namespace mailhearth {

namespace {

[[gnu::init_priority(kStartUpPriority)]] const StartUpGuard startUp;

constexpr double kRange = 32768.0;
constinit std::uint64_t state = 0;

// Knuth's MMIX generator; its highest bits are its best. Returns 0 to 32767.
int Draw() {
  state = state * 6364136223846793005u + 1442695040888963407u;
  return static_cast<int>(state >> 49);
}

}  // namespace

int RandomInt(int n) { return static_cast<int>(Draw() * static_cast<double>(n) / kRange); }

SrandomInit::SrandomInit() {
  state = static_cast<std::uint64_t>(std::time(nullptr)) + static_cast<std::uint64_t>(::getpid());
}

}  // namespace mailhearth
