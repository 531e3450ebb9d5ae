#!/bin/bash
# symbols_test.sh PAGE OBJECTS: which folders the objects of each folder need, against the table
# of the page. OBJECTS is a list with semicolons.
set -euo pipefail
IFS=';' read -ra objects <<<"$2"

# check PAGE: prints what an object needs and may not, and fails if there is anything.
check() {
  nm -A "${objects[@]}" | awk -v page="$1" '
    BEGIN {
      while ((getline line < page) > 0) {
        if (split(line, cells, " [|] ") != 3 || !match(line, /^\| `src\/[^`]*`/)) continue
        from = substr(line, 8, RLENGTH - 8)
        sub(/ \|$/, "", cells[3])
        for (n = split(cells[3], names, ", "); n > 0; --n) may[from, names[n]] = 1
        ++rows
      }
    }
    {
      folder = $0
      sub(/:[^:]*$/, "", folder)
      object = folder
      sub(/.*mailhearth_objects\.dir\/(\.\/)?/, "", folder)
      sub(/\/[^\/]*$/, "", folder)
    }
    $(NF - 1) ~ /^[TDBRC]$/ { home[$NF] = folder }
    $(NF - 1) == "U" { needs[folder, $NF] = object }
    END {
      for (need in needs) {
        split(need, parts, SUBSEP)
        to = home[parts[2]]
        if (to == "" || to == parts[1]) continue
        ++crossing
        if (!((parts[1], to) in may)) { print needs[need], "needs", parts[2], "of", to; bad = 1 }
      }
      if (rows < 5 || crossing < 50) { print "seen:", rows + 0, "rows,", crossing + 0, "symbols"; bad = 1 }
      exit bad
    }'
}

check "$1"

# The check itself: the queue needs the tables.
narrower=$(mktemp)
trap 'rm "$narrower"' EXIT
sed '/^| .src\/queue. /s/, tables |$/ |/' "$1" >"$narrower"
{ check "$narrower" || true; } | grep -q '/queue/.* of tables$' || {
  echo "a forbidden symbol is not seen"
  exit 1
}
