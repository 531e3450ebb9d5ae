#!/bin/bash
# examples_test.sh PAGE DISKFREE COMPILER WORD...: does what the examples of a page say, and
# compares the output with theirs. The words are what else the compiler needs: flags, archive.
#
# Examples are fenced blocks in Markdown, and literal displays in manual pages:
#   cpp      a program, told in a manual page by its first line, an #include
#   text     what the program before it prints
#   console  a dialogue with the shell, in a folder of its own: commands behind "$ " and
#            "> ", and what they print; told in a manual page by its first line
set -euo pipefail
page=$1 diskfree=$2 compiler=$3
words=("${@:4}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "FAILED: $(basename "$page"): $*"
  exit 1
}

# Writes each example into files of its own: NUMBER.cpp or NUMBER.sh, and NUMBER.out.
awk -v work="$work" '
  function begin(name) { kind = name; number += (kind != "text"); first = 1 }
  function put(suffix, text) { print text >(sprintf("%s/%02d.%s", work, number, suffix)) }
  function plain(text) {  # of what roff sees
    sub(/^\\&/, "", text)
    gsub(/\\\(aq/, "\047", text)
    gsub(/\\-/, "-", text)
    gsub(/\\e/, "\\", text)
    return text
  }
  function check_order() {
    if ((kind == "text") != (last == "cpp"))
      print "line " NR ": a program and its output go together"
    last = kind
  }
  kind == "" && /^```(cpp|text|console)$/ { begin(substr($0, 4)); check_order(); next }
  kind == "" && /^\.Bd -literal/ { begin("?"); --number; next }
  kind != "" && (/^```$/ || /^\.Ed$/) { kind = ""; next }
  kind == "?" {
    begin(/^#include/ ? "cpp" : /^\$ / ? "console" : "text")
    check_order()
  }
  kind != "" && FILENAME ~ /\.[0-9]$/ { $0 = plain($0) }
  kind == "cpp" { put("cpp", $0) }
  kind == "text" { put("out", $0) }
  kind == "console" && /^[$>] / { put("sh", substr($0, 3)); next }
  kind == "console" { put("out", $0) }
  END { if (last == "cpp") print "the last program has no output" }
' "$page" >"$work/order"
[ ! -s "$work/order" ] || fail "$(cat "$work/order")"

done=0
for example in "$work"/*.cpp "$work"/*.sh; do
  [ -e "$example" ] || continue
  mkdir "$work/in"
  case $example in
    *.cpp)
      "$compiler" "$example" "${words[@]}" -o "$work/program" 2>"$work/errors" ||
        { cat "$work/errors"; fail "does not compile"; }
      run=("$work/program")
      ;;
    *.sh) run=(sh "$example") ;;
  esac
  expected=${example%.*}.out
  touch "$expected"
  (cd "$work/in" && PATH=$(dirname "$diskfree"):$PATH TZ=UTC "${run[@]}" </dev/null) \
    >"$work/got" 2>&1 ||
    { cat "$example" "$work/got"; fail "ended with $?"; }
  diff -u "$expected" "$work/got" || { cat "$example"; fail "printed (+) is not what is said (-)"; }
  rm -r "$work/in"
  done=$((done + 1))
done
[ "$done" -gt 0 ] || fail "has no examples"
echo "$done examples do what they say"
