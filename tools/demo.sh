#!/bin/sh
# Builds Kelmo and starts the client in the folder of its data files.
set -eu
cd "$(dirname "$0")/.."
tools/setup-debian.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build
cd build/data
exec ../bin/kelmo "$@"
