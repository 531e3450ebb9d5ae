// What the shared library shows; everything else stays hidden in it.

#ifndef MAILHEARTH_STRINGS_EXPORT_H
#define MAILHEARTH_STRINGS_EXPORT_H

// Stands before a class, or a function, that the shared library shows.
#define MAILHEARTH_EXPORT __attribute__((visibility("default")))

#endif  // MAILHEARTH_STRINGS_EXPORT_H
