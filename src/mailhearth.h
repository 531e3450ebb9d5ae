// The whole library: the one header a newcomer needs. Everything is declared in
// `inline namespace mailhearth`, so names are used as they stand, and
// mailhearth::SString settles an ambiguity.

#ifndef MAILHEARTH_MAILHEARTH_H
#define MAILHEARTH_MAILHEARTH_H

#include "strings/SString.h"    // strings
#include "system/Dates.h"       // time-zone rules at program start
#include "system/FileStatus.h"  // what is at a path, and the room beside it
#include "system/Random.h"      // random integers

#endif  // MAILHEARTH_MAILHEARTH_H
