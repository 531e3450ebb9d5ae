#include "SStringRep.h"

#include <cstring>
#include <new>
#include <type_traits>

#include "Sizes.h"

inline namespace mailhearth {

static_assert(std::is_aggregate_v<SStringRep> && std::is_trivially_destructible_v<SStringRep>);

namespace {

// Returns a buffer for `n` bytes and a NUL.
char* NewBuffer(int n) { return new char[static_cast<std::size_t>(AllocationFor(n))]; }

}  // namespace

SStringRep* SStringRep::MovedFrom() noexcept {
  constinit static SStringRep rep{nullptr, 0, 1 << 30, 0};
  ++rep.links;
  return &rep;
}

SStringRep* SStringRep::New(int n) {
  const int allocated = AllocationFor(n);
  void* const block = ::operator new(sizeof(SStringRep) + static_cast<std::size_t>(allocated));
  char* const buffer = static_cast<char*>(block) + sizeof(SStringRep);
  return ::new (block) SStringRep{buffer, 0, 1, allocated};
}

void SStringRep::Enlarge(int n) {
  char* const larger = NewBuffer(n);
  if (buffer != nullptr) std::memcpy(larger, buffer, static_cast<std::size_t>(length));
  larger[length] = '\0';
  delete[] buffer;
  buffer = larger;
  allocated = AllocationFor(n);
}

void SStringRep::Clear() {
  delete[] buffer;
  buffer = nullptr;
  length = allocated = 0;
}

void SStringRep::Delete(SStringRep* rep) {
  if (!rep->OneBlock()) delete[] rep->buffer;
  delete rep;
}

}  // namespace mailhearth
