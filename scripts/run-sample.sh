#!/usr/bin/env bash
# Installs what is missing, builds everything and shows the bundled sample database.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
build/bin/vellum-cli schema samples/sample.mdb
