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

# use ROOT: builds the program outside the tree with what pkg-config says, and runs it.
use() {
  local root=$1 pc
  pc=$(find "$root" -name mailhearth.pc)
  [ -n "$pc" ] || fail "no mailhearth.pc in $root"
  export PKG_CONFIG_PATH=${pc%/*}
  # pkg-config quotes its words as the shell does.
  eval "found=($(pkg-config --cflags mailhearth) \"$here/consumer.cpp\" $(pkg-config --libs mailhearth))"
  "$compiler" "${flags[@]}" "${found[@]}" -o "$work/consumer"
  [ "$("$work/consumer")" = "diskFree 1 10 1 0" ] || fail "the program printed something else"
}

cmake --install "$build" --prefix "$work/root" >"$work/log"
use "$work/root"
mv "$work/root" "$work/elsewhere"
use "$work/elsewhere" # an installed tree can be moved
root=$work/elsewhere

[ ! -e "$root/include/mailhearth/command" ] || fail "the command's own headers are installed"
[ ! -e "$root/include/mailhearth/system/StartUp.h" ] || fail "an internal header is installed"
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
  grep -vE '^(((vtable|typeinfo|typeinfo name) for |virtual thunk to )?mailhearth::|db_lock_fd$)' >"$work/foreign" || true
[ ! -s "$work/foreign" ] || fail "outside the namespace: $(cat "$work/foreign")"

# Hardening of a release: position-independent, read-only relocations, bound at start.
if [ "$config" = Release ]; then
  readelf -h "$command" | grep -q 'Type:.*DYN' || fail "not position-independent"
  readelf -lW "$command" | grep -q GNU_RELRO || fail "no RELRO"
  readelf -d "$command" | grep -q BIND_NOW || fail "not bound at start"
  ! readelf -lW "$command" | grep 'GNU_STACK' | grep -q RWE || fail "executable stack"
  grep -q __stack_chk_fail "$work/needed" || fail "no stack protector"
fi
echo "installed, moved, used"
