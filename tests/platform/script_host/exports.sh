#!/bin/sh
# Passes if each library's one defined dynamic symbol is RegisterSources.
set -eu
for library in "$@"; do
    exported=$(nm --dynamic --defined-only --format=posix "$library" | cut -d ' ' -f 1)
    echo "$library: $exported"
    [ "$exported" = RegisterSources ]
done
