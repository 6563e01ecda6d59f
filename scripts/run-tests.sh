#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite with CTest.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
# PostgreSQL and MariaDB for the servers suite (label "servers"; it skips without them, except in CI).
scripts/test-servers.sh install || echo "run-tests: the database servers could not be installed"
VELLUM_CMAKE_ARGS="${VELLUM_CMAKE_ARGS:-} -DVELLUM_WERROR=ON" scripts/build.sh
export QT_QPA_PLATFORM=offscreen
ctest --test-dir build --output-on-failure -j2 "$@"
