#include "StartUp.h"

#include <optional>
#include <type_traits>

#include "Dates.h"
#include "Random.h"

inline namespace mailhearth {

namespace {

// The static object of a class, made and destroyed by the table alone.
template <class Object>
constinit std::optional<Object> object;

template <class Object>
constexpr StartUpModule StaticObject() {
  // Else the compiler would have the object destroyed at exit, whatever the table says.
  static_assert(std::is_trivially_destructible_v<std::optional<Object>>);
  return {[] { object<Object>.emplace(); }, [] { object<Object>.reset(); }};
}

constexpr StartUpModule kModules[] = {
    StaticObject<SrandomInit>(),
    StaticObject<SdatetimeInit>(),
};

constinit StartUpTable table{kModules};

}  // namespace

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

StartUpGuard::StartUpGuard() { table.Enter(); }
StartUpGuard::~StartUpGuard() { table.Leave(); }

}  // namespace mailhearth
