#!/bin/bash
# The completion offers what the program takes.
#
#   completion.bash PROGRAM COMPLETION
set -u
program=$1
source "$2"
compopt() { :; }  # works in a completion only
failures=0

# complains WHAT EXPECTED GOT
expect() {
    [[ $2 == "$3" ]] && return
    printf '%s: expected "%s", got "%s"\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}

# offers WORD...: what is offered for the last word of a command line.
offers() {
    COMP_WORDS=("$program" "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _tolvane_measure "$program"
    echo "${COMPREPLY[*]}"
}

expect "options" "--csv --csv-naming --csv-name --csv-separator --csv-decimal --csv-unicode" "$(offers --csv)"
expect "a short option" "-m" "$(offers -m)"
expect "metrics" "psnr psnr_256" "$(offers --metric ps)"
expect "a plug-in's metric" "roi_psnr" "$(offers -m roi)"
expect "nothing behind a colon" "" "$(offers -m psnr : Y)"
expect "words of the help" "rec601 pc601" "$(offers --matrix "")"
expect "behind an equals sign" "never" "$(offers --progress = n)"
expect "codecs" "HFYU H264" "$(offers --codec H)"
expect "layouts" "P010 P014 P016" "$(offers --processed-layout P01)"
expect "no words for a size" "" "$(offers --mask-size "")"
cd "$(dirname "$2")" || exit 1
expect "files" "tolvane-measure.bash" "$(offers --original tolvane-measure.b)"
expect "directories, not files" "" "$(offers --csv tolvane-measure.b)"

# Each word is taken: what is missing then is the original.
for layout in $_tolvane_measure_layouts; do
    expect "layout $layout" "tolvane-measure: --original is missing: it takes the original video" \
        "$("$program" --layout "$layout" 2>&1)"
done
for filter in $_tolvane_measure_filters; do
    expect "source $filter" "tolvane-measure: --original is missing: it takes the original video" \
        "$("$program" --avs-filter "$filter" 2>&1)"
done
exit $((failures > 0))
