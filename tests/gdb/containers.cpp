// Strings, lists and tables for printers_test.sh: at each call of Stop(), gdb prints what the
// comments above it ask for, "gdb EXPRESSION -> WHAT IS PRINTED".

#include <mailhearth/mailhearth.h>
#include <unistd.h>

#include <climits>
#include <vector>

#include "Stop.h"

namespace {

struct Port : STableItem {
  int number = 0;
};

void Strings() {
  const SString undefined, alike = undefined, empty("");
  const SString alone("postmaster"), shared("joe@example.org"), sharer = shared;
  const SString bytes("a\0\t\r\n\\\"\x7f\xc8 z", 11);
  const SString cut('x', 1000);
  SString moved("away");
  const SString taken = std::move(moved);
  const std::vector<SString> several = {alone.Segment(0, 4), "b"};
  Keep({&undefined, &alike, &empty, &alone, &shared, &sharer, &bytes, &cut, &moved, &taken,
        &several});
  // gdb undefined -> undefined
  // gdb empty -> ""
  // gdb alone -> "postmaster"
  // gdb shared -> "joe@example.org" [2 handles]
  // gdb *sharer.rep_ -> "joe@example.org" [2 handles]
  // gdb bytes -> "a\0\t\r\n\\\"\127\200 z"
  // gdb -elements 5 -- cut -> "xxxxx"...
  // gdb moved -> undefined [moved from]
  // gdb taken -> "away"
  // gdb several[0] -> "post"
  Stop();
}

void Views() {
  const char buffer[] = {'a', 'b', 'c', 'd', 'e', 'f'};
  SFixedString fixed(buffer, 4);
  SFixedString resting;
  SString view = fixed;
  SString text("abcdef");
  SSubString part = text.Segment(2, 3);
  Keep({&fixed, &resting, &view, &text, &part});
  // gdb fixed -> "abcd" [view, 1 handle]
  // gdb resting -> "" [view, 0 handles]
  // gdb view -> "abcd" [view, 3 links]
  // gdb part -> "cde" [from 2 of 6]
  Stop();
  text = "abc";
  // gdb part -> "c" [from 2 of 3]
  Stop();
  text = SString();
  // gdb part -> "" [from 2 of 0]
  Stop();
}

void Lists() {
  const SStringList undefined, empty = SString("").Split(""), list = {"a", "b", SString()};
  const SStringList sharer = list;
  SStringList rest = {"c", "d", "e"};
  const SStringList spliced = rest.Splice(0, 2);
  const SStringItem item("alone");
  Keep({&undefined, &empty, &list, &sharer, &spliced, &item});
  // gdb undefined -> undefined list of 0
  // gdb empty -> list of 0
  // gdb list -> list of 3 [2 handles] = {"a", "b", undefined}
  // gdb -elements 1 -- list -> list of 3 [2 handles] = {"a"...}
  // gdb spliced -> undefined list of 2 = {"c", "d"}
  // gdb item -> "alone"
  // gdb *list.rep_->root->next -> "b"
  Stop();
}

void Tables() {
  STable ports(0, 0);
  auto* port = new Port;
  port->number = 25;
  ports.Add("smtp", port);
  SNamedStringList record(1, 1), empty(0, 0);
  record["Trace:"].Push("router 1");
  record["Trace:"].Push("local 2");
  static_cast<void>(record["Looked-At:"]);
  SNamedValue hits(0);
  hits["example.org"] = 3;
  hits["example.com"] = -1;
  SIndexString parts;
  const SIndexString none;
  parts[1200] = "chunk";
  parts[-7] = "";
  Keep({&ports, &record, &empty, &hits, &parts, &none, port});
  // gdb ports -> table of 1 in 7 buckets, whatever their case = {{<mailhearth::STableItem> = "smtp", number = 25}}
  // gdb *port -> {<mailhearth::STableItem> = "smtp", number = 25}
  // gdb record -> 2 names, \r\n = {["Trace:"] = list of 2 = {"router 1", "local 2"}, ["Looked-At:"] = undefined list of 0}
  // gdb empty -> 0 names, whatever their case
  // gdb hits -> 2 names, whatever their case = {["example.org"] = 3, ["example.com"] = -1}
  // gdb parts -> 2 strings = {[1200] = "chunk", [-7] = ""}
  // gdb none -> 0 strings
  Stop();
}

void Garbage() {
  Raw<SString> noString(0), wildString(0xFF);
  Raw<SStringList> noList(0), wildList(0xA5);
  Raw<STable> noTable(0), wildTable(0xA5);
  Raw<SNamedStringList> noRecord(0), wildRecord(0xA5);
  Raw<SIndexString> wildParts(0xA5);
  Raw<SFixedString> wildFixed(0xA5);
  Raw<SSubString> noPart(0);
  SStringRep negative{nullptr, -1, 1, 0},
      endless{reinterpret_cast<char*>(16), INT_MAX - 1, 1, INT_MAX};
  SStringListRep unringed{nullptr, 3, 1, 1};
  Keep({&noString, &wildString, &noList, &wildList, &noTable, &wildTable, &noRecord, &wildRecord,
        &wildParts});
  Keep({&wildFixed, &noPart, &negative, &endless, &unringed});
  // gdb noString.object -> <null>
  // gdb wildString.object -> <Cannot access memory at address 0xffffffffffffffff>
  // gdb negative -> <length -1, 1 links, 0 allocated>
  // gdb endless -> <Cannot access memory at address 0x10>
  // gdb noList.object -> <null>
  // gdb wildList.object -> <Cannot access memory at address 0xa5a5a5a5a5a5a5ad>
  // gdb noTable.object -> <0 entries in 0 buckets>
  // gdb wildTable.object -> <-1515870811 entries in -1515870811 buckets>
  // gdb noRecord.object -> <0 entries in 0 buckets>
  // gdb wildRecord.object -> <-1515870811 entries in -1515870811 buckets>
  // gdb wildParts.object -> 0 strings
  // gdb wildFixed.object -> <length -1515870811, -1515870811 links, -1515870811 allocated>
  // gdb noPart.object -> <Cannot access memory at address 0x0>
  Stop();
}

// gdb spoils what lists and tables are held together by. The process does not outlive it.
[[noreturn]] void Damage() {
  SStringList endless = {"a", "b"}, broken = {"a", "b", "c"}, hollow = {"a"}, wild = {"a", "b"};
  SNamedStringList shorter(0, 0), loose(0, 0), nameless(0, 0), typeless(0, 0);
  for (SNamedStringList* const list : {&shorter, &loose, &nameless, &typeless}) {
    for (const char* const name : {"A:", "B:"}) (*list)[name] = "1";
  }
  Keep({&endless, &broken, &hollow, &wild, &shorter, &loose, &nameless, &typeless});
  // gdb endless.rep_->count = 2147483647 -> 2147483647
  // gdb endless -> list of 2147483647 = {"a", "b", <a ring of 2>}
  // gdb broken.rep_->root->next->next->prev = 0 -> (mailhearth::SStringItem *) 0x0
  // gdb broken -> list of 3 = {"a", "b", <the ring is broken>}
  // gdb hollow.rep_->root = 0 -> (mailhearth::SStringItem *) 0x0
  // gdb hollow -> list of 1 = {<root and count do not fit>}
  // gdb hollow.rep_->root = 64 -> (mailhearth::SStringItem *) 0x40
  // gdb hollow -> list of 1 = {<Cannot access memory at address 0x40>}
  // gdb wild.rep_->root->next = 64 -> (mailhearth::SStringItem *) 0x40
  // gdb wild -> list of 2 = {"a", <Cannot access memory at address 0x50>}
  // gdb wild.rep_->count = -2 -> -2
  // gdb wild -> <count -2, 1 links, flags 1>
  // gdb shorter.table_.count_ = 3 -> 3
  // gdb shorter -> 3 names, whatever their case = {["A:"] = list of 1 = {"1"}, ["B:"] = list of 1 = {"1"}, [damage] = <only 2 linked>}
  // gdb loose.table_.sentinel_.listNext->listNext = 64 -> (mailhearth::STableItem *) 0x40
  // gdb loose -> 2 names, whatever their case = {["A:"] = list of 1 = {"1"}, [damage] = <Cannot access memory at address 0x58>}
  // gdb nameless.table_.sentinel_.listNext->key.rep_ = 0 -> (mailhearth::SStringRep *) 0x0
  // gdb nameless -> 2 names, whatever their case = {[<null>] = list of 1 = {"1"}, ["B:"] = list of 1 = {"1"}}
  // gdb *(long*)typeless.table_.sentinel_.listNext = 64 -> 64
  // gdb typeless -> 2 names, whatever their case = {["A:"] = list of 1 = {"1"}, ["B:"] = list of 1 = {"1"}}
  // gdb typeless.table_ -> table of 2 in 7 buckets, whatever their case = {"A:", {<mailhearth::STableItem> = "B:", list = list of 1 = {"1"}}}
  Stop();
  ::_exit(0);
}

}  // namespace

int main() {
  Strings();
  Views();
  Lists();
  Tables();
  Garbage();
  Damage();
}
