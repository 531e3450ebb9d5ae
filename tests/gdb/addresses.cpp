// Addresses and tokens for printers_test.sh; containers.cpp tells how.

#include <mailhearth/mailhearth.h>

#include "Stop.h"

namespace {

void Addresses() {
  const S821Address joe("Joe <@relay.example,@hub.example:joe@example.org>");
  const S821Address null("<>"), bad("<joe@>");
  S821Address incomplete("<joe@example.org>");
  incomplete.LocalPart() = "";
  Keep({&joe, &null, &bad, &incomplete});
  // gdb joe -> valid address = {route = list of 2 = {"relay.example", "hub.example"}, local part = "joe", domain = "example.org"}
  // gdb null -> null address = {route = undefined list of 0, local part = undefined, domain = undefined}
  // gdb bad -> bad address = {route = undefined list of 0, local part = "joe", domain = undefined}
  // gdb incomplete -> bad address = {route = undefined list of 0, local part = "", domain = "example.org"}
  Stop();
}

void HeaderAddresses() {
  S822Parser parser("John Smith <john@example.org>, joe@example.org (Joe)");
  const S822Address phrase = parser.NextAddress(), comment = parser.NextAddress();
  const S822Address end = parser.NextAddress();
  Keep({&phrase, &comment, &end});
  // gdb phrase -> valid address = {route = undefined list of 0, local part = "john", domain = "example.org", phrase = "John Smith", comment = undefined}
  // gdb comment -> valid address = {route = undefined list of 0, local part = "joe", domain = "example.org", phrase = undefined, comment = "(Joe)"}
  // gdb end -> end of a list = {route = undefined list of 0, local part = undefined, domain = undefined, phrase = undefined, comment = undefined}
  Stop();
}

void Tokens() {
  S822Parser parser("joe@example.org (Joe)");
  const SToken atom = parser.NextToken(), at = parser.NextToken();
  const SToken own("\"a b\"", TokQuoted), two("x", TokAtom | TokBad);
  const SToken outside(SString("abc"), 2, 2, TokAtom);
  Keep({&atom, &at, &own, &two, &outside});
  // gdb atom -> TokAtom "joe"
  // gdb at -> TokAt "@"
  // gdb own -> TokQuoted "\"a b\""
  // gdb two -> 68 "x"
  // gdb outside -> <from 2, 2 bytes of 3>
  Stop();
}

}  // namespace

int main() {
  Addresses();
  HeaderAddresses();
  Tokens();
}
