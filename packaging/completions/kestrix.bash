# Completion of kestrix for bash.
# shellcheck shell=bash disable=SC2207  # compgen's words are lines without blanks, or file names with IFS set

# Adds the files, or what else $1 says, whose path begins with $2, each behind the prefix $3.
_kestrix_paths() {
    local IFS=$'\n'
    compopt -o filenames 2>/dev/null
    COMPREPLY+=($(compgen -P "${3-}" "$1" -- "$2"))
}

_kestrix() {
    local words cword
    COMPREPLY=()
    # A colon breaks no word here: a URI is one.
    IFS=$' \t\n' read -ra words <<<"${COMP_LINE:0:COMP_POINT}"
    [[ ${COMP_LINE:0:COMP_POINT} == *[[:space:]] ]] && words+=('')
    cword=$((${#words[@]} - 1))
    local cur=${words[cword]} prev=${words[cword - 1]}
    case $prev in
        --connect | --choose)
            case $cur in
                serial:* | replay:* | simulator:*) _kestrix_paths -f "${cur#*:}" "${cur%%:*}:" ;;
                *)
                    compopt -o nospace 2>/dev/null
                    COMPREPLY=($(compgen -W '@KINDS@' -- "$cur"))
                    ;;
            esac
            # What stands before the last colon is on the line already.
            if [[ $cur == *:* && ${COMP_WORDBREAKS-} == *:* ]]; then
                local before=${cur%"${cur##*:}"}
                COMPREPLY=("${COMPREPLY[@]#"$before"}")
            fi
            ;;
        --documents | --tour) _kestrix_paths -d "$cur" ;;
        --settings) _kestrix_paths -f "$cur" ;;
        *)
            COMPREPLY=($(compgen -W '--connect --choose --documents --settings --tour --console --verbose --version --help' -- "$cur"))
            ;;
    esac
}

complete -F _kestrix kestrix
