# Completion of kestrix-cli for bash.
# shellcheck shell=bash disable=SC2207  # compgen's words are lines without blanks, or file names with IFS set

_kestrix_cli_scenarios() {
    kestrix-cli simulate --list 2>/dev/null
}

# Adds those of the words in $1 that begin with $2, each behind the prefix $3.
_kestrix_cli_words() {
    COMPREPLY+=($(compgen -P "${3-}" -W "$1" -- "$2"))
}

# Adds the files whose path begins with $1, each behind the prefix $2.
_kestrix_cli_files() {
    local IFS=$'\n'
    compopt -o filenames 2>/dev/null
    COMPREPLY+=($(compgen -P "${2-}" -f -- "$1"))
}

_kestrix_cli_uri() {
    local rest=${1#*:}
    case $1 in
        serial:* | replay:*) _kestrix_cli_files "$rest" "${1%%:*}:" ;;
        simulator:*)
            _kestrix_cli_words "$(_kestrix_cli_scenarios)" "$rest" simulator:
            _kestrix_cli_files "$rest" simulator:
            ;;
        *)
            compopt -o nospace 2>/dev/null
            _kestrix_cli_words '@KINDS@' "$1"
            ;;
    esac
}

# Completes the last of the words given.
_kestrix_cli_complete() {
    local words=("$@")
    local last=$(($# - 1))
    local cur=${words[last]} prev=${words[last - 1]}
    local commands='decode monitor capture simulate devices records show export delete log verify'
    local command='' arguments=0 i
    for ((i = 1; i < last; i++)); do
        case ${words[i]} in
            --settings | --frame | --seconds | --tcp | --pty | --scenario | --seed | --speed) ((i++)) ;;
            --documents | --project | --company | --address | --operator | --serial | --every | --count) ((i++)) ;;
            --format | --output | --mail | --smtp | --from | --cafile | --file) ((i++)) ;;
            -?*) ;;
            *) if [[ -z $command ]]; then command=${words[i]}; else ((arguments++)); fi ;;
        esac
    done

    case $prev in
        --settings | --pty | --documents | --output | --cafile | --file)
            _kestrix_cli_files "$cur"
            return
            ;;
        --scenario)
            _kestrix_cli_words "$(_kestrix_cli_scenarios)" "$cur"
            _kestrix_cli_files "$cur"
            return
            ;;
        --format)
            _kestrix_cli_words 'csv json' "$cur"
            return
            ;;
        --speed)
            _kestrix_cli_words '1 10 100 max' "$cur"
            return
            ;;
        --frame | --seconds | --seed | --tcp | --every | --count) return ;;
        --project | --company | --address | --operator | --serial | --mail | --smtp | --from) return ;;
    esac

    if [[ $cur == -?* ]]; then
        local options='--settings --verbose --help'
        [[ -n $command ]] && options+=' --seconds'
        case $command in
            '') options+=' --version' ;;
            decode) options+=' --frame --screen' ;;
            capture) options+=' --force' ;;
            records) options+=' --json --documents' ;;
            verify) options+=' --file --json --documents' ;;
            show) options+=' --json --evidence --documents' ;;
            export)
                options+=' --csv --pdf --format --output --documents'
                options+=' --mail --smtp --from --cafile --password-stdin --draft'
                ;;
            delete) options+=' --documents' ;;
            log)
                options+=' --project --company --address --operator --serial'
                options+=' --changes --every --count --documents'
                ;;
            simulate) options+=' --tcp --pty --scenario --seed --speed --list' ;;
        esac
        _kestrix_cli_words "$options" "$cur"
        return
    fi

    case $command:$arguments in
        :0) _kestrix_cli_words "$commands" "$cur" ;;
        monitor:0 | capture:0 | log:0 | devices:*) _kestrix_cli_uri "$cur" ;;
        decode:0 | capture:1) _kestrix_cli_files "$cur" ;;
    esac
}

_kestrix_cli() {
    local IFS=$' \t\n' words
    local line=${COMP_LINE:0:COMP_POINT}
    read -ra words <<<"$line"
    [[ $line == *[[:blank:]] ]] && words+=('')
    COMPREPLY=()
    _kestrix_cli_complete "${words[@]}"
    # Where a colon breaks words, bash replaces only what stands behind the last one.
    if [[ $COMP_WORDBREAKS == *:* ]]; then
        local cur=${words[${#words[@]} - 1]}
        COMPREPLY=("${COMPREPLY[@]#"${cur%"${cur##*:}"}"}")
    fi
}

complete -F _kestrix_cli kestrix-cli
