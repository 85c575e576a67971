#!/bin/sh
# Builds Kelmo twice, plain and with AddressSanitizer + UndefinedBehaviorSanitizer,
# and runs every test: the unit tests under the sanitizers, then all tests of the
# plain build (unit, integration, e2e under Xvfb; benchmarks are run by hand).
# Ends with CTest's summary.
set -eu
cd "$(dirname "$0")/.."
tools/setup-debian.sh
jobs=$(nproc)

cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DKELMO_SANITIZE=ON \
  -DKELMO_BUILD_BENCHMARKS=OFF
cmake --build build-asan
ctest --test-dir build-asan -L unit -j "$jobs" --output-on-failure

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build
ctest --test-dir build -j "$jobs" --output-on-failure -LE benchmark
