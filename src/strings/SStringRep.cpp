#include "SStringRep.h"

#include <new>
#include <type_traits>

#include "Sizes.h"

inline namespace mailhearth {

static_assert(std::is_aggregate_v<SStringRep> && std::is_trivially_destructible_v<SStringRep>);

namespace {

constexpr SStringRep kUndefined{nullptr, 0, SStringRep::kPinned, 0, SStringRep::kLibrary};

// Returns a buffer for `n` bytes and a NUL.
char* NewBuffer(int n) { return new char[static_cast<std::size_t>(AllocationFor(n))]; }

}  // namespace

// Pinned, so nothing writes to it. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
SStringRep* SStringRep::Undefined() noexcept { return const_cast<SStringRep*>(&kUndefined); }

SStringRep* SStringRep::New(int n) {
  const int allocated = AllocationFor(n);
  void* const block = ::operator new(sizeof(SStringRep) + static_cast<std::size_t>(allocated));
  char* const buffer = static_cast<char*>(block) + sizeof(SStringRep);
  return ::new (block) SStringRep{buffer, 0, 1, allocated, kLibrary};
}

SStringRep* SStringRep::NewUndefined() {
  return ::new (::operator new(sizeof(SStringRep))) SStringRep{nullptr, 0, 1, 0, kLibrary};
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
  if (rep->origin == kLibrary) {
    ::operator delete(rep);
  } else {
    delete[] rep->buffer;
    delete rep;
  }
}

}  // namespace mailhearth
