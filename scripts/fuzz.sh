#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into ./build-fuzz and runs each on a copy of its seeds
# for a bounded time (FUZZ_SECONDS, default 60). A crash, a leak or a sanitizer report fails the
# run and leaves the input that caused it in build-fuzz/findings/TARGET.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${FUZZ_SECONDS:-60}"
CC=clang CXX=clang++ cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELLUM_FUZZ=ON \
  -DVELLUM_BUILD_GUI=OFF -DVELLUM_BUILD_BENCH=OFF >/dev/null
mapfile -t targets < <(find tests/fuzz -maxdepth 1 -name 'fuzz_*.cpp' -printf '%f\n' | sed 's/\.cpp$//' | sort)
cmake --build build-fuzz -j"$(nproc)" --target "${targets[@]}"
for target in "${targets[@]}"; do
  seeds="tests/fuzz/seeds/${target#fuzz_}"
  work="build-fuzz/corpus/$target"
  findings="build-fuzz/findings/$target"
  rm -rf "$work" && mkdir -p "$work" "$findings"
  [ -d "$seeds" ] && cp -r "$seeds"/. "$work"/
  echo "fuzz: $target for ${seconds}s on $(ls "$work" | wc -l) seeds"
  build-fuzz/bin/"$target" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 \
    -artifact_prefix="$findings/" -print_final_stats=1 "$work" 2>"build-fuzz/$target.log" \
    || { tail -n 60 "build-fuzz/$target.log"; echo "fuzz: $target failed; inputs in $findings" >&2; exit 1; }
  grep -E '^stat::number_of_executed_units' "build-fuzz/$target.log" || true
done
