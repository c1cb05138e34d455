#!/usr/bin/env bash
# Reads the includes of src/ and fails when a folder of the core includes a folder of the
# UI layer, when a console program reaches the UI layer, or when two folders include
# each other (directly or round a loop).
set -euo pipefail
cd "$(dirname "$0")/../src"

core_folders="core settings morse words exercises audio texttools keyboard"
ui_folders="ui panels playback app"
console_folders="cli datagen"

is_in() { [[ " $2 " == *" $1 "* ]]; }

edges=$(grep -rHoE '^#include "[a-z]+/' --include='*.h' --include='*.cpp' . \
  | sed -E 's#^\./([a-z]+)/[^:]*:\#include "([a-z]+)/#\1 \2#' | sort -u)

status=0
while read -r from to; do
  [ -z "$from" ] && continue
  [ "$from" = "$to" ] && continue
  if ! is_in "$to" "$core_folders $ui_folders"; then
    echo "check-layers: src/$from includes an unknown folder $to/"; status=1
  elif is_in "$from" "$core_folders $console_folders" && is_in "$to" "$ui_folders"; then
    echo "check-layers: src/$from (core or console) includes the UI folder src/$to:"
    grep -rlE "^#include \"$to/" "$from" | sed 's/^/    /'; status=1
  fi
done <<<"$edges"

# tsort names the folders of a loop on its standard error.
loops=$(awk '$1 != $2' <<<"$edges" | tsort 2>&1 >/dev/null || true)
if [ -n "$loops" ]; then
  echo "check-layers: folders that include each other:"; echo "$loops" | sed 's/^/    /'; status=1
fi
[ $status -eq 0 ] && echo "check-layers: $(wc -l <<<"$edges") folder links, all pointing one way"
exit $status
