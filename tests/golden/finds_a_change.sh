#!/bin/sh
# The comparison must be able to fail: one digit, one row, one case, one frame more.
#
#   finds_a_change.sh GOLDEN PROGRAM TABLE SAMPLES_DIR
set -eu
golden=$1 program=$2 table=$3 samples=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# differs SED_COMMAND SAID: the table changed by the command differs in just what is said.
differs() {
    sed "$1" "$table" >"$work/table.txt"
    ! cmp -s "$table" "$work/table.txt" || { echo "no change: $1"; exit 1; }
    status=0
    "$golden" --program "$program" --table "$work/table.txt" --samples "$samples" --only 8x8 >"$work/said" || status=$?
    [ $status = 1 ] || { echo "status $status after $1"; exit 1; }
    grep -qx "$2" "$work/said" || { echo "after $1:"; cat "$work/said"; exit 1; }
}
rows='/^\[8x8\]/,/^$/'
differs "$rows s/^\(mse Y .* |.*\)\(.\)$/\1\2 7/" '8x8: mse Y original processed, number of frames: 3 in the table, 2 measured'
differs "$rows s/^\(mse U .*\) [^ ]*$/\1 1.5/" '8x8: mse U original processed, frame 1: 1.5 in the table, [0-9.]* measured'
differs "$rows s/^\(mse V .*: \)[^ ]* |/\1null |/" '8x8: mse V original processed, sequence: null in the table, [0-9.]* measured'
differs "$rows { /^vqm Y/d; }" '8x8: vqm Y original processed: not in the table'
differs "$rows s/^vqm /qvm /" '8x8: qvm Y original processed: not measured any more'
differs 's/^\[8x8\]/[8x9]/' '8x9: only in the table'

# Renewed, a wrong table is the right one again.
sed "$rows s/^\(mse Y .*\) [^ ]*$/\1 1.5/" "$table" >"$work/table.txt"
"$golden" --program "$program" --table "$work/table.txt" --samples "$samples" --only 8x8 --renew >/dev/null
cmp "$table" "$work/table.txt"

# What can't be told is no agreement.
status=0
"$golden" --program "$work/none" --table "$table" --samples "$samples" 2>/dev/null || status=$?
[ $status = 2 ] || { echo "status $status without a program"; exit 1; }
status=0
"$golden" --program "$program" --table "$table" --samples "$samples" --only 8x8 --no-such-option 2>/dev/null || status=$?
[ $status = 2 ] || { echo "status $status for an option that the program refuses"; exit 1; }
