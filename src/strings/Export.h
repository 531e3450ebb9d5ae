// Marks the names that the shared library exports; all others stay hidden in it.

#ifndef MAILHEARTH_STRINGS_EXPORT_H
#define MAILHEARTH_STRINGS_EXPORT_H

// Goes before a class or a function that the shared library exports.
#define MAILHEARTH_EXPORT __attribute__((visibility("default")))

#endif  // MAILHEARTH_STRINGS_EXPORT_H
