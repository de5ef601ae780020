# Completion of tolvane-measure in bash. Options, metrics and codecs come from the program itself.

# Layouts of raw files.
_tolvane_measure_layouts="IYUV YV12 YV16 YUV YUY2 UYVY Y Y410 P010 P014 P016 P210 P214 P216 P410 P414 P416
    P410_RGB P414_RGB P416_RGB"
_tolvane_measure_filters="AviSource OpenDMLSource AviFileSource DirectShowSource DirectShowSource2 FFMpegSource QTSource RawSource"

# The words that are offered for the value of option $2 of program $1; a status above 0 if they aren't known.
_tolvane_measure_words() {
    case $2 in
        -m | --metric) "$1" --list-metrics 2>/dev/null | awk '{ print $2 }' ;;
        --codec) echo list; "$1" --codec list 2>/dev/null | awk '{ print $1 }' ;;
        --*layout) echo $_tolvane_measure_layouts ;;
        --*avs-filter) echo $_tolvane_measure_filters ;;
        --bad-frames-type) echo 0 1 2 3 ;;
        # Those that the help names: "  --matrix rec601|pc601 ..."
        *) "$1" --help 2>/dev/null | awk -v option="$2" '
            $1 == option && $2 ~ /^[a-z0-9]+(\|[a-z0-9]+)+$/ { gsub(/\|/, " ", $2); print $2; found = 1 }
            END { exit !found }' ;;
    esac
}

_tolvane_measure() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words
    # "--option=value" comes as three words.
    [[ $word == "=" ]] && word=
    [[ $previous == "=" ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
    # So does "psnr:Y"; the component is the user's to write.
    [[ $word == ":" || $previous == ":" ]] && return

    local IFS=$' \t\n'
    case $previous in
        --original | --processed | --processed2 | --mask | --json | --log)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            return
            ;;
        --csv | --visualize | --bad-frames)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            return
            ;;
        -m | --metric | --*layout | --*avs-filter | --codec | --bad-frames-type | --*matrix | --*naming | --csv-separator | \
            --csv-decimal | --progress | --caption-position)
            words=$(_tolvane_measure_words "$1" "$previous") &&
                mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
            return
            ;;
        --*size | --*avs-parameters | --threads | --csv-name | --bad-frames-count | --bad-frames-radius)
            return
            ;;
    esac
    words=$("$1" --help 2>/dev/null | awk '$1 ~ /^-/ { split($1, names, ","); for (i in names) print names[i] }')
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _tolvane_measure tolvane-measure
