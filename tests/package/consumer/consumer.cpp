// A program outside the tree, as its author finds the package.

#include <mailhearth/mailhearth.h>

#include <cstdio>

int main() {
  const SString name = SString("diskFree") + ' ' + SString(1);
  const bool qualified = mailhearth::SString("a") < "b";
  const int drawn = RandomInt(1);
  std::printf("%s %d %d %d\n", name.Data(), name.Length(), qualified, drawn);
  return FileSize(SString()) == -1 ? 0 : 1;
}
