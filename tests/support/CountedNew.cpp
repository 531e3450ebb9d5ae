#include "support/CountedNew.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "strings/Sizes.h"
#include "strings/SmallBlocks.h"

namespace {

std::atomic<int> made = 0, freed = 0;
std::atomic<std::size_t> bytes = 0;
int untilFailure = -1;  // negative: none is to come
bool fired = false;
int depth = 0;  // of EveryBlockNew

void* Allocate(std::size_t size) {
  ++made;
  bytes += size;
  if (untilFailure >= 0 && untilFailure-- == 0) {
    fired = true;
    ++freed;  // as it is none
    OutOfMemory();
  }
  if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
  ++freed;
  throw std::bad_alloc();
}

void* AllocateOrNull(std::size_t size) noexcept {
  try {
    return Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void Free(void* block) noexcept {
  if (block != nullptr) ++freed;
  std::free(block);
}

}  // namespace

int LiveAllocations() { return made - freed; }

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Free(block); }

EveryBlockNew::EveryBlockNew() {
  if (depth++ == 0) mailhearth::SmallBlocks::Limit(0);
}
EveryBlockNew::~EveryBlockNew() {
  if (--depth == 0) mailhearth::SmallBlocks::Limit(mailhearth::SmallBlocks::kMostKept);
}

AllocationCount::AllocationCount() : before_(made), bytesBefore_(bytes) {}
int AllocationCount::Made() const { return made - before_; }
std::size_t AllocationCount::Bytes() const { return bytes - bytesBefore_; }

FailNthAllocation::FailNthAllocation(int n) {
  untilFailure = n;
  fired = false;
}
FailNthAllocation::~FailNthAllocation() { untilFailure = -1; }
bool FailNthAllocation::Fired() const { return fired; }
