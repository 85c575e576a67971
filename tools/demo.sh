#!/bin/bash
# Builds Kelmo, starts the local server with the demo world (unless a server
# already listens on the login port), and starts the client in the folder of
# its data files, signed in to the demo account. The server stops with the client.
set -eu
cd "$(dirname "$0")/.."
tools/setup-debian.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build

server=
if ! (exec 3<>/dev/tcp/127.0.0.1/7171) 2>/dev/null; then
  build/bin/kelmo-server --world data/world/demo.txt --log build/server.log &
  server=$!
  trap 'kill "$server" 2>/dev/null; wait "$server" 2>/dev/null' EXIT
  for _ in $(seq 50); do
    (exec 3<>/dev/tcp/127.0.0.1/7171) 2>/dev/null && break
    sleep 0.1
  done
fi

cd build/data
KELMO_AUTOLOGIN="${KELMO_AUTOLOGIN:-demo:demo:Ayla}" ../bin/kelmo "$@"
