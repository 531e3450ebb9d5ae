// The modules that have work to do before main, and the table of them that the guards hold. It
// stands apart from StartUp.cpp, because each module stands on that.

#include <optional>
#include <type_traits>

#include "Dates.h"
#include "Random.h"
#include "StartUp.h"

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

StartUpGuard::StartUpGuard() { table.Enter(); }
StartUpGuard::~StartUpGuard() { table.Leave(); }

}  // namespace mailhearth
