// MAILHEARTH_EXPORT marks what the shared library shows; everything else stays
// hidden in it.

#ifndef MAILHEARTH_STRINGS_EXPORT_H
#define MAILHEARTH_STRINGS_EXPORT_H

#define MAILHEARTH_EXPORT __attribute__((visibility("default")))

#endif  // MAILHEARTH_STRINGS_EXPORT_H
