#include "support/CountedNew.h"

#include <cstdlib>
#include <new>

namespace {

int made = 0;
std::size_t bytes = 0;
int untilFailure = -1;  // negative: none is to come
bool fired = false;

void* Allocate(std::size_t size) {
  ++made;
  bytes += size;
  if (untilFailure >= 0 && untilFailure-- == 0) {
    fired = true;
    throw std::bad_alloc();
  }
  if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}

void* AllocateOrNull(std::size_t size) noexcept {
  try {
    return Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateOrNull(size);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

AllocationCount::AllocationCount() : before_(made), bytesBefore_(bytes) {}
int AllocationCount::Made() const { return made - before_; }
std::size_t AllocationCount::Bytes() const { return bytes - bytesBefore_; }

FailNthAllocation::FailNthAllocation(int n) {
  untilFailure = n;
  fired = false;
}
FailNthAllocation::~FailNthAllocation() { untilFailure = -1; }
bool FailNthAllocation::Fired() const { return fired; }
