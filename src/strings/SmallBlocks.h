// Not installed. Memory for small things that come and go often: representations of strings of
// up to 1,023 bytes, nodes and heads of lists, entries of named lists. Blocks that are given back
// go to free lists, one for each size and thread, and are taken from there again.
//
// Taking and giving back cost a few instructions: no lock, and no guard of a thread-local object.
// A block that is not in a free list comes from the global `operator new`, so new-handlers and
// replaced allocators are asked for new memory as ever. A thread may give back a block that
// another has taken.
//
// A thread keeps at most kMostKept bytes, which is what a processor's own cache holds: blocks come
// from the free lists in any order, and a longer walk through memory in any order would cost more
// than the allocator that knows how to keep neighbours together. A block given back beyond that
// goes to the global `operator delete` at once, and what is kept goes there when the thread ends.
// Under the address sanitizer nothing is kept, so that it sees every error.

#ifndef MAILHEARTH_STRINGS_SMALLBLOCKS_H
#define MAILHEARTH_STRINGS_SMALLBLOCKS_H

#include <array>
#include <cstddef>
#include <new>

inline namespace mailhearth {

class SmallBlocks {
 public:
  // Bytes that a thread keeps at the most.
  static constexpr std::size_t kMostKept = std::size_t{256} << 10;

  // The sizes of blocks. Each is what an allocator with a header of 8 bytes and steps of 16
  // gives without waste.
  static constexpr std::array<std::size_t, 8> kSizes = {24, 40, 56, 88, 152, 280, 536, 1048};

  // Returns the index of the smallest size that holds `size` bytes. Needs: there is one.
  static constexpr std::size_t ClassOf(std::size_t size) {
    std::size_t i = 0;
    while (kSizes[i] < size) ++i;
    return i;
  }

  // Returns a block of kSizes[sizeClass] bytes, aligned as `operator new` aligns. Throws as that
  // does.
  [[nodiscard]] static void* Take(std::size_t sizeClass) {
    Kept& kept = kept_;
    Free* const block = kept.first[sizeClass];
    if (block == nullptr) return ::operator new(kSizes[sizeClass]);
    kept.first[sizeClass] = block->next;
    kept.room += kSizes[sizeClass];
    return block;
  }

  // Gives back a block of that class, taken by any thread.
  static void Give(void* block, std::size_t sizeClass) noexcept {
    if (kept_.room < kSizes[sizeClass]) [[unlikely]]
      return _GiveWithoutRoom(block, sizeClass);
    _Keep(block, sizeClass);
  }

  // Bytes that this thread keeps.
  [[nodiscard]] static std::size_t BytesKept() noexcept;

  // Gives all that this thread keeps to `operator delete`, and from then on keeps at most `most`
  // bytes: for tests, in which every block is to be new.
  static void Limit(std::size_t most) noexcept;

 private:
  struct Free {
    Free* next;
  };

  // What a thread keeps. It is initialised by the compiler and has no destructor, so using it
  // takes no guard. Its clean-up is arranged for by the first block that is given back, which
  // finds no room.
  struct Kept {
    std::array<Free*, kSizes.size()> first;
    std::size_t room;  // bytes that may come to those kept
    std::size_t most;  // bytes kept at the most; 0 once the thread has ended
    bool cleanUp;      // whether the clean-up is arranged for
  };

  struct CleanUp;

  // Needs: room.
  static void _Keep(void* block, std::size_t sizeClass) noexcept {
    Kept& kept = kept_;
    kept.room -= kSizes[sizeClass];
    kept.first[sizeClass] = ::new (block) Free{kept.first[sizeClass]};
  }

  static void _GiveWithoutRoom(void* block, std::size_t sizeClass) noexcept;

  // Among the first objects that are loaded: found by an offset, without a call.
  __attribute__((tls_model("initial-exec"))) static thread_local constinit Kept kept_;
};

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_SMALLBLOCKS_H
