#include "Sizes.h"

#include <new>

inline namespace mailhearth {

void OutOfMemory() {
  while (const std::new_handler handler = std::get_new_handler()) handler();
  throw std::bad_alloc();
}

}  // namespace mailhearth
