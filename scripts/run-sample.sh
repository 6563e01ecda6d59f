#!/usr/bin/env bash
# Installs what is missing, builds everything and opens the bundled sample database in the
# window. Without a display it says so and converts the sample with the command-line tool.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x build/bin/vellum ]; then
  exec build/bin/vellum samples/sample.mdb
fi
out="$PWD/out/sample-csv"
echo "No display (DISPLAY and WAYLAND_DISPLAY are empty): converting the sample with vellum-cli instead."
build/bin/vellum-cli export samples/sample.mdb "$out" --format csv
echo "The tables of samples/sample.mdb are in $out:"
ls -1 "$out"
