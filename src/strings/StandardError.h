// Not installed. The standard error and log streams for the library's own diagnostics.

#ifndef MAILHEARTH_STRINGS_STANDARDERROR_H
#define MAILHEARTH_STRINGS_STANDARDERROR_H

#include <iosfwd>

inline namespace mailhearth {

// Returns std::cerr, constructed. Sources use this in place of <iostream>, which
// would construct all standard streams before main in every program that links
// them, of which a small command would feel a few hundredths of its whole run.
[[nodiscard]] std::ostream& StandardError();

// Returns std::clog, constructed, in the same way.
[[nodiscard]] std::ostream& StandardLog();

}  // namespace mailhearth

#endif  // MAILHEARTH_STRINGS_STANDARDERROR_H
