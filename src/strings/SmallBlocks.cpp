#include "SmallBlocks.h"

#include <utility>

inline namespace mailhearth {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kKeeps = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kKeeps = false;
#else
constexpr bool kKeeps = true;
#endif
#else
constexpr bool kKeeps = true;
#endif

}  // namespace

thread_local constinit SmallBlocks::Kept SmallBlocks::kept_ = {
    {}, 0, kKeeps ? SmallBlocks::kMostKept : 0, false};

// Runs when the thread ends; what is given back after it is not kept.
struct SmallBlocks::CleanUp {
  ~CleanUp() { Limit(0); }
};

std::size_t SmallBlocks::BytesKept() noexcept {
  return kept_.cleanUp ? kept_.most - kept_.room : 0;
}

void SmallBlocks::Limit(std::size_t most) noexcept {
  for (Free*& first : kept_.first) {
    while (first != nullptr) ::operator delete(std::exchange(first, first->next));
  }
  kept_.most = kKeeps ? most : 0;
  kept_.room = kept_.cleanUp ? kept_.most : 0;
}

void SmallBlocks::_GiveWithoutRoom(void* block, std::size_t sizeClass) noexcept {
  if (!kept_.cleanUp && kept_.most > 0) {
    static thread_local CleanUp cleanUp;
    kept_.cleanUp = true;
    kept_.room = kept_.most;
  }
  if (kept_.room < kSizes[sizeClass]) {
    ::operator delete(block);
  } else {
    _Keep(block, sizeClass);
  }
}

}  // namespace mailhearth
