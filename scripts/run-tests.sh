#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite with CTest.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
VELLUM_CMAKE_ARGS="${VELLUM_CMAKE_ARGS:-} -DVELLUM_WERROR=ON" scripts/build.sh
export QT_QPA_PLATFORM=offscreen
ctest --test-dir build --output-on-failure -j2 "$@"
