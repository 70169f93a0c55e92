#!/bin/sh
# Installs what is missing, then configures and builds a preset. Usage: scripts/build.sh PRESET [TARGET..]
set -eu
cd "$(dirname "$0")/.."
preset=$1
shift
scripts/setup.sh
log=build/$preset.configure.log
mkdir -p build
cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
if [ $# -gt 0 ]; then
    cmake --build --preset "$preset" --parallel --target "$@"
else
    cmake --build --preset "$preset" --parallel
fi
