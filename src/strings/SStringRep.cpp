#include "SStringRep.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <type_traits>

#include "Sizes.h"
#include "SmallBlocks.h"

inline namespace mailhearth {

static_assert(std::is_aggregate_v<SStringRep> && std::is_trivially_destructible_v<SStringRep>);

namespace {

constexpr SStringRep kUndefined{nullptr, 0, SStringRep::kPinned, 0, SStringRep::kLibrary};

// Blocks with a buffer of up to kLargestSmall bytes are SmallBlocks. The smallest holds a buffer
// of kSmallestRoom, of which a string may use 8, or none.
constexpr int kSmallestRoom = 16;
constexpr int kLargestSmall = 1024;

constexpr std::size_t SizeOf(int allocated) {
  return sizeof(SStringRep) + static_cast<std::size_t>(std::max(allocated, kSmallestRoom));
}

// The class of a block with a buffer of `allocated` bytes, at most kLargestSmall.
constexpr std::size_t ClassOf(int allocated) {
  constexpr std::size_t kFirst = SmallBlocks::ClassOf(SizeOf(0));
  const auto room = static_cast<unsigned>(std::max(allocated, kSmallestRoom));
  return kFirst + static_cast<std::size_t>(std::countr_zero(room / kSmallestRoom));
}

static_assert(ClassOf(0) == SmallBlocks::ClassOf(SizeOf(0)) && ClassOf(8) == ClassOf(16));
static_assert(ClassOf(64) == SmallBlocks::ClassOf(SizeOf(64)));
static_assert(ClassOf(kLargestSmall) == SmallBlocks::ClassOf(SizeOf(kLargestSmall)));

void* NewBlock(int allocated) {
  if (allocated > kLargestSmall) return ::operator new(SizeOf(allocated));
  return SmallBlocks::Take(ClassOf(allocated));
}

// Where the buffer of a block begins.
char* BufferIn(void* block) { return static_cast<char*>(block) + sizeof(SStringRep); }

// Returns a buffer for `n` bytes and a NUL.
char* NewBuffer(int n) { return new char[static_cast<std::size_t>(AllocationFor(n))]; }

}  // namespace

// Pinned, so nothing writes to it. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
SStringRep* SStringRep::Undefined() noexcept { return const_cast<SStringRep*>(&kUndefined); }

SStringRep* SStringRep::New(int n) {
  const int allocated = AllocationFor(n);
  void* const block = NewBlock(allocated);
  return ::new (block) SStringRep{BufferIn(block), 0, 1, allocated, kLibrary};
}

SStringRep* SStringRep::NewUndefined() {
  return ::new (NewBlock(0)) SStringRep{nullptr, 0, 1, 0, kLibrary};
}

bool SStringRep::Widen(int n) {
  if (origin != kLibrary || n >= kSmallestRoom) return false;
  buffer = BufferIn(this);
  allocated = AllocationFor(n);
  return true;
}

void SStringRep::Rebuffer(int n, std::string_view bytes) {
  char* const made = NewBuffer(n);
  length = static_cast<int>(bytes.copy(made, bytes.size()));
  made[length] = '\0';
  delete[] buffer;
  buffer = made;
  allocated = AllocationFor(n);
}

void SStringRep::Clear() {
  delete[] buffer;
  buffer = nullptr;
  length = allocated = 0;
}

void SStringRep::Delete(SStringRep* rep) noexcept {
  if (rep->origin == kAdopted) {
    delete[] rep->buffer;
    delete rep;
  } else if (rep->allocated > kLargestSmall) {
    ::operator delete(rep);
  } else {
    SmallBlocks::Give(rep, ClassOf(rep->allocated));
  }
}

}  // namespace mailhearth
