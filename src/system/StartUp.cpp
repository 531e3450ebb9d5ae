#include "StartUp.h"

#include <cstddef>

inline namespace mailhearth {

void StartUpTable::Enter() {
  if (guards_++ != 0) return;
  for (std::size_t i = modules_.size(); i-- > 0;) {
    if (modules_[i].start != nullptr) modules_[i].start();
  }
}

void StartUpTable::Leave() {
  if (--guards_ != 0) return;
  for (const StartUpModule& module : modules_) {
    if (module.stop != nullptr) module.stop();
  }
}

}  // namespace mailhearth
