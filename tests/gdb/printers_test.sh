#!/bin/bash
# printers_test.sh SOURCE PROGRAM PRINTERS: runs a program under gdb and compares what the
# printers show with what the comments of its source say. Exits with 77 where gdb is missing
# or may not trace.
set -euo pipefail
source=$1 program=$2 printers=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

skip() {
  echo "skipped: $*"
  exit 77
}

gdb=(gdb -nx -batch -iex 'set debuginfod enabled off' -iex 'set disable-randomization off')
command -v gdb >/dev/null || skip "there is no gdb (package gdb)"
"${gdb[@]}" -ex run -ex 'info program' /bin/true >"$work/try" 2>&1 || true
grep -q 'exited normally' "$work/try" || skip "gdb cannot trace a process: $(tail -n 1 "$work/try")"
"${gdb[@]}" -ex 'python print("python")' 2>&1 | grep -qx python || skip "gdb has no Python"

# The commands: at each Stop(), what the comments above it ask for.
awk -v printers="$printers" '
  BEGIN {
    print "set width 0\nset height 0\nset confirm off\nset print frame-info short-location"
    print "source " printers "\nbreak Stop\nrun"
  }
  /^ *\/\/ gdb .* -> / {
    sub(/^ *\/\/ gdb /, "")
    sub(/ -> .*/, "")
    asked = asked "print " $0 "\n"
  }
  /^ *Stop\(\);/ {
    printf "up\n%scontinue\n", asked
    asked = ""
  }' "$source" >"$work/commands"
sed -nE 's,^ *// gdb .* -> ,,p' "$source" >"$work/expected"
sed -nE 's,^ *// gdb (.*) -> .*,\1,p' "$source" >"$work/asked"
[ -s "$work/expected" ] || { echo "FAILED: $source asks for nothing"; exit 1; }

"${gdb[@]}" -x "$work/commands" "$program" >"$work/out" 2>"$work/errors" || true
sed -nE 's,^\$[0-9]+ = ,,p' "$work/out" >"$work/printed"

if ! diff -u <(paste -d '|' "$work/asked" "$work/expected") \
  <(paste -d '|' "$work/asked" "$work/printed") ||
  grep -E 'Python Exception|Traceback|\.gdb|commands:' "$work/errors"; then
  cat "$work/errors"
  echo "FAILED: $(basename "$source") as printed (+) and as expected (-)"
  exit 1
fi
echo "$(wc -l <"$work/printed") printed as expected"
