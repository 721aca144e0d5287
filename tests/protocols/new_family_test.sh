#!/usr/bin/env bash
# scripts/new-family in a copy of the project: refuses what it must, and leaves nothing out.
set -euo pipefail
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
cd "$1"
cp -r --parents scripts src/protocols instruments tests/protocols "$copy"
cd "$copy"

for refused in "Upper" "flytec" "two kFlytec" "two kNone" ""; do
  # shellcheck disable=SC2086
  ! scripts/new-family $refused 2>/dev/null || { echo "accepted: $refused"; exit 1; }
done
scripts/new-family first kFlymaster >/dev/null
scripts/new-family second >/dev/null
for place in src/protocols/{CMakeLists.txt,families.cpp} instruments/{CMakeLists.txt,families.cpp} \
  tests/protocols/CMakeLists.txt; do
  for name in first second; do grep -q "$name" "$place" || { echo "$place lacks $name"; exit 1; }; done
done
for list in ProtocolType GpsType; do
  sed -n "/^enum.* $list/,/^};/p" src/protocols/families.h | grep -q "kSecond = "
done
