// A program that never names the standard streams: the library makes them when it needs
// them.

#include "strings/SString.h"

int main() { SString("a\n").Debug(0); }
