#!/bin/sh
# Installed under another prefix, the programs find their plug-ins, source plug-ins and help, and leave nothing there.
#
#   installed_tree.sh CMAKE BUILD_DIR SAMPLES_DIR
set -eu
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
"$1" --install "$2" --prefix "$prefix/usr" >/dev/null
find "$prefix" | sort >"$prefix.before"
trap 'rm -rf "$prefix" "$prefix.before"' EXIT

measure="$prefix/usr/bin/tolvane-measure"
cd /
"$measure" --list-metrics | grep -q roi_psnr || { echo "the plug-in isn't in the list"; exit 1; }

mkdir "$prefix/run"
cd "$prefix/run"
direct=$("$measure" -q --original "$3/yard.y4m" --processed "$3/yard_x264.y4m")
scripted=$("$measure" -q --avs --avs-filter FFMpegSource --only-preferred --original "$3/yard.y4m" --processed "$3/yard_x264.y4m")
[ -n "$direct" ] && [ "$direct" = "$scripted" ] || { echo "through a script: $scripted; without: $direct"; exit 1; }
cd /
rmdir "$prefix/run"

[ -f "$prefix/usr/lib/tolvane/help/index.html" ] || { echo "no help beside the program"; exit 1; }
[ -x "$prefix/usr/bin/tolvane" ] || { echo "no tolvane among the commands"; exit 1; }
find "$prefix" | sort | diff "$prefix.before" -
