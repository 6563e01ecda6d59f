#!/usr/bin/env bash
# Fails when a tracked C++ file differs from what clang-format makes of it (.clang-format at the
# root). With --fix, rewrites the files in place instead.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files -- '*.cpp' '*.h')
if [ "${1:-}" = "--fix" ]; then
  clang-format -i "${files[@]}"
  exit 0
fi
if ! clang-format --dry-run --Werror "${files[@]}"; then
  echo "check-format: the files above are not formatted; run scripts/check-format.sh --fix" >&2
  exit 1
fi
echo "check-format: ${#files[@]} files formatted"
