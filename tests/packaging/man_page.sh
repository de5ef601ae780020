#!/bin/sh
# The manual names the options that the program knows and no others.
#
#   man_page.sh PROGRAM PAGE
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

options() { grep -oE -- '--?[a-z][a-z0-9-]*' | sort -u; }

"$1" --help | awk '$1 ~ /^-/ { print $1 }' | tr , '\n' | options >"$work/program"
# What stands in bold on the page begins with an escaped dash.
sed 's/\\f.//g; s/\\-/-/g' "$2" | grep -oE -- '(^|[^a-z0-9-])--?[a-z][a-z0-9-]*' | options >"$work/page"

[ -s "$work/program" ]
diff "$work/program" "$work/page"
