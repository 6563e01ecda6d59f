#!/usr/bin/env bash
# Builds the Qt-free programs and their tests with AddressSanitizer and UndefinedBehaviorSanitizer
# into ./build-asan and runs the unit tests there. Any sanitizer report fails the run. Warnings
# are not errors here: the instrumentation makes GCC report uninitialised values that are not.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELLUM_SANITIZE=ON -DVELLUM_WERROR=OFF \
  -DVELLUM_BUILD_GUI=OFF -DVELLUM_BUILD_BENCH=OFF ${VELLUM_CMAKE_ARGS:-} >/dev/null
cmake --build build-asan -j"$(nproc)"
export ASAN_OPTIONS="${ASAN_OPTIONS:-abort_on_error=1:detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
ctest --test-dir build-asan --output-on-failure -j2 -L unit "$@"
