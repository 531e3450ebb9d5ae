// Records of the message queue for printers_test.sh; containers.cpp tells how.

#include <mailhearth/mailhearth.h>

#include <cstdlib>

#include "Stop.h"

namespace {

void Records() {
  SField field(1, 0), nameless(1, 1);
  field.PutFilename("/no/such/field");
  field["A:"] = "1";
  static_cast<void>(nameless.Write());  // sets the error
  SControl control("20261105080703.1234");
  control["Function:"] = "Local-Delivery";
  SRequest request(control);
  Keep({&field, &nameless, &control, &request});
  // gdb field -> 1 name, file "/no/such/field", not loaded = {["A:"] = list of 1 = {"1"}}
  // gdb nameless -> 0 names, \r\n, file undefined, not loaded, error -11
  // gdb control -> 1 name, file "/no/such/root/control/20261105080703.1234-Control", not loaded = {["Function:" [2 handles]] = list of 1 [2 handles] = {"Local-Delivery"}}
  // gdb request -> 1 name, file "/no/such/root/control/20261105080703.1234-Control", not loaded = {["Function:" [2 handles]] = list of 1 [2 handles] = {"Local-Delivery"}}
  // gdb *(mailhearth::SNamedStringList*)&request -> 1 name = {["Function:" [2 handles]] = list of 1 [2 handles] = {"Local-Delivery"}}
  Stop();
}

void Garbage() {
  Raw<SControl> wild(0xA5);
  Keep({&wild});
  // gdb wild.object -> <Cannot access memory at address 0xa5a5a5a5a5a5a58d>
  Stop();
}

}  // namespace

int main() {
  ::setenv("Mailhearth", "/no/such/root", 1);
  Records();
  Garbage();
}
