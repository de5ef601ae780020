#!/bin/sh
# Passes if check-layers ($1) accepts a tree whose includes point downward and refuses it with one upward include.
set -eu
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/kernels" "$tree/engine/run"
printf 'kernels: \nengine/run: kernels\n' > "$tree/layers.txt"
echo '#include "kernels/a.h"' > "$tree/engine/run/b.cpp"
echo > "$tree/kernels/a.h"
"$1" "$tree/layers.txt" "$tree"

echo '#include "engine/run/b.h"' > "$tree/kernels/a.h"
! "$1" "$tree/layers.txt" "$tree"
