#!/bin/bash
# use_test.sh ROOT COMPILER: builds programs with the library as it is installed below ROOT,
# by pkg-config and by CMake, shared and static, and runs them.
set -euo pipefail
unset CDPATH
root=$1 compiler=$2
consumer=$(cd "$(dirname "$0")" && pwd)/consumer
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "FAILED: $*"
  exit 1
}

# link OUTPUT SOURCE STATIC COMPILER_WORD...: builds a program with what pkg-config says.
# STATIC is --static or nothing.
link() {
  local output=$1 source=$2 static=$3 found
  shift 3
  # pkg-config quotes its words as the shell does.
  eval "found=($(pkg-config $static --cflags mailhearth) \"\$source\" $(pkg-config $static --libs mailhearth))"
  "$@" $static "${found[@]}" -o "$output"
}

# runs KIND PROGRAM: the program is linked so, and prints what it should.
runs() {
  local kind=static
  ! readelf -d "$2" | grep "NEEDED.*libmailhearth" >/dev/null || kind=shared
  [ "$kind" = "$1" ] || fail "$2 is not $1"
  [ "$("$2")" = "diskFree 1 10 1 0" ] || fail "$2 printed something else"
}

pc=$(find "$root" -name mailhearth.pc)
[ -n "$pc" ] || fail "no mailhearth.pc in $root"
export PKG_CONFIG_PATH=${pc%/*}
flags=(-std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Werror)
link "$work/shared" "$consumer/consumer.cpp" "" "$compiler" "${flags[@]}"
LD_LIBRARY_PATH=$(pkg-config --variable=libdir mailhearth) runs shared "$work/shared"
link "$work/static" "$consumer/consumer.cpp" --static "$compiler" "${flags[@]}"
runs static "$work/static"
link "$work/c" "$consumer/consumer.c" --static cc -Wall -Werror
[ "$("$work/c")" = "0 1" ] || fail "the program in C printed something else"

# CMake's programs know themselves where the library is.
{
  CXX=$compiler cmake -G Ninja -S "$consumer" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$root" \
    -DWANTED="$(pkg-config --modversion mailhearth)" && cmake --build "$work/cmake"
} >"$work/log" 2>&1 || { cat "$work/log"; fail "find_package in $root"; }
runs shared "$work/cmake/shared"
runs static "$work/cmake/static"
