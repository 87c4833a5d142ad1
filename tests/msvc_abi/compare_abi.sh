#!/usr/bin/env bash
# Compares what a compiler makes of our sources in MSVC's ABI with what programs built by MSVC rely on; prints the
# difference. The compiler's command ends the arguments.
#   compare_abi.sh tables REQUIRED COMMAND...     the tables of virtual operations that COMMAND prints
#   compare_abi.sh exports REQUIRED COMMAND...    the exports in the assembly that COMMAND prints
set -euo pipefail
kind=$1 required=$2
shift 2

# The tables of the classes that REQUIRED names, in its order, slot by slot. Without namespaces: compilers spell them in
# more or less full. The first line of a printed table is the type's description, not a slot.
tables() {
  awk '
    FNR == NR { if (/^[^ #]/) { order[++count] = $1; wanted[$1] }; next }
    /^VFTable for / { split($0, quoted, "\047"); for (i = 2; i in quoted; i += 2) class = quoted[i]; printing = 1; next }
    !/\|/ { printing = 0 }
    printing && class in wanted && !/ RTTI$/ { sub(/^ *[0-9]+ \| /, "  "); slots[class] = slots[class] "\n" $0 }
    END { for (i = 1; i <= count; i++) print order[i] slots[order[i]] }
  ' "$required" - | sed -E -e '/^ /s/\b[a-z][a-z0-9_]*:://g' -e 's/> >/>>/g' -e 's/\[(scalar|vector) deleting]/[deleting]/'
}

exports() {
  sed -n -e 's/\\"/"/g' -e 's/^[[:space:]]*\.ascii[[:space:]]*" \(\/EXPORT:.*LoadPlugin.*\)"$/\1/p' \
    -e 's/^"\(?LoadPlugin@[^"]*\)":.*/defined: \1/p' | LC_ALL=C sort
}

found=$("$@")
diff -u --label required --label found <(grep -v '^#' "$required") <("$kind" <<<"$found")
