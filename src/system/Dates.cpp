#include "Dates.h"

#include <time.h>  // tzset: POSIX, not in <ctime>

#include "StartUp.h"

inline namespace mailhearth {

namespace {

[[gnu::init_priority(kStartUpPriority)]] const StartUpGuard startUp;

}  // namespace

SdatetimeInit::SdatetimeInit() { ::tzset(); }

}  // namespace mailhearth
