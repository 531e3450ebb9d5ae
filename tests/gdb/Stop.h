// Where gdb stops, and what is still there when it does.

#ifndef MAILHEARTH_TESTS_GDB_STOP_H
#define MAILHEARTH_TESTS_GDB_STOP_H

#include <cstring>
#include <initializer_list>

// gdb has a breakpoint here.
[[gnu::noinline]] inline void Stop() { asm volatile("" : : : "memory"); }

// The optimiser takes it that the objects are looked at, now and at every Stop().
inline void Keep(std::initializer_list<const void*> objects) {
  asm volatile("" : : "g"(objects.begin()) : "memory");
}

// Memory that no constructor has seen.
template <class Object>
struct Raw {
  explicit Raw(unsigned char filling) { std::memset(bytes, filling, sizeof bytes); }
  alignas(Object) unsigned char bytes[sizeof(Object)];
  Object& object = *reinterpret_cast<Object*>(bytes);
};

#endif  // MAILHEARTH_TESTS_GDB_STOP_H
