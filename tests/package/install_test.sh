#!/bin/bash
# install_test.sh BUILD_DIR COMPILER CONFIG: installs a build into an empty folder and
# checks, from outside, what a user gets.
set -euo pipefail
unset DESTDIR CDPATH
build=$1 compiler=$2 config=$3
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "FAILED: $*"
  exit 1
}

flags=(-std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Werror)

cmake --install "$build" --prefix "$work/root" >"$work/log"
"$here/use_test.sh" "$work/root" "$compiler"
mv "$work/root" "$work/elsewhere"
root=$work/elsewhere
"$here/use_test.sh" "$root" "$compiler" # an installed tree can be moved

{
  echo mailhearth.h
  sed -n 's,^#include "\([^"]*\)".*,\1,p' "$root/include/mailhearth/mailhearth.h"
} | sort >"$work/public"
(cd "$root/include/mailhearth" && find . -type f -printf '%P\n') | sort >"$work/installed"
diff "$work/public" "$work/installed" || fail "other headers are installed than the umbrella names"
(cd "$root/include" && find . -name '*.h') | while read -r header; do
  echo "#include \"$header\"" |
    "$compiler" "${flags[@]}" -I "$root/include" -fsyntax-only -x c++ - ||
    fail "$header does not compile alone"
done

command=$root/bin/diskFree
[ "$("$command" "$work/missing")" = "-0.001" ] || fail "the installed diskFree does not run"

# The command is dynamic: stat and statvfs are found by the dynamic linker.
nm -D --undefined-only "$command" >"$work/needed"
grep -qw stat "$work/needed" || fail "diskFree does not take stat from the C library"
grep -qw statvfs "$work/needed" || fail "diskFree does not take statvfs from the C library"

# The shared library goes by its major name, and shows what it is known to show.
library=$(readlink -f "$(find "$root" -name libmailhearth.so)")
[[ $library =~ \.so(\.[0-9]+){3}$ ]] || fail "$library is not a full name"
readelf -d "$library" | grep 'SONAME.*\[libmailhearth\.so\.[0-9]*\]' >/dev/null || fail "no major name"
"$here/../../scripts/symbols" "$library" >"$work/symbols"
diff "$here/symbols.txt" "$work/symbols" ||
  fail "the shared library shows something else; CONTRIBUTING.md tells what to do"

# The command links all of the library.
archive=$(find "$root" -name libmailhearth.a)
functions() { nm --defined-only "$2" | awk -v kind="^[$1]$" '$2 ~ kind { print $3 }' | sort -u; }
functions T "$archive" >"$work/library"
functions Tt "$command" >"$work/command" # what is hidden is local there
[ -s "$work/library" ] || fail "the archive is empty"
[ -z "$(comm -23 "$work/library" "$work/command")" ] ||
  fail "diskFree lacks $(comm -23 "$work/library" "$work/command" | c++filt)"

# Only the guards of the start-up table run before main.
objdump -h "$archive" | awk '/file format/ { object = $1 } / \.(init_array|ctors)/ { print object }' |
  sort -u | tr '\n' ' ' >"$work/early"
[ "$(cat "$work/early")" = "Dates.cpp.o: Random.cpp.o: " ] &&
  [ "$(objdump -h "$archive" | grep -cE ' \.init_array\.0*1000 ')" = 2 ] ||
  fail "these objects run code before main: $(cat "$work/early")"

# Symbols that are not in the library's namespace could clash with somebody else's; one is for C.
nm --defined-only "$archive" | awk '$2 ~ /[TDBRC]/ { print $3 }' | c++filt |
  grep -vE '^(((vtable|VTT|construction vtable|typeinfo|typeinfo name) for |virtual thunk to )?mailhearth::|db_lock_fd$)' >"$work/foreign" || true
[ ! -s "$work/foreign" ] || fail "outside the namespace: $(cat "$work/foreign")"

# hardened FILE: position-independent, relocations read-only and bound at start, no stack
# to execute, stack protector, checked calls of the C library.
hardened() {
  readelf -h "$1" >"$work/elf"
  readelf -lW "$1" >>"$work/elf"
  readelf -dW "$1" >>"$work/elf"
  nm -D --undefined-only "$1" >>"$work/elf"
  grep -q 'Type:.*DYN' "$work/elf" || fail "$1 is not position-independent"
  grep -q GNU_RELRO "$work/elf" || fail "$1 has no RELRO"
  grep -q BIND_NOW "$work/elf" || fail "$1 is not bound at start"
  grep -q 'GNU_STACK.* RW ' "$work/elf" || fail "$1 has an executable stack"
  ! grep -q TEXTREL "$work/elf" || fail "$1 has relocations in its text"
  grep -q __stack_chk_fail "$work/elf" || fail "$1 has no stack protector"
  grep -q '_chk@' "$work/elf" || fail "$1 calls the C library unchecked"
}

if [ "$config" = Release ]; then
  hardened "$command"
  hardened "$library"
  readelf -dW "$command" | grep 'Flags:.*PIE' >/dev/null || fail "$command is no program"
fi
echo "installed, moved, used"
