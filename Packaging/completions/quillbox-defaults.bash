# Completion of quillbox-defaults in bash.
_quillbox_defaults()
{
    local words="" command="${COMP_WORDS[1]}"
    if [ "$COMP_CWORD" -eq 1 ]; then
        words="list read write delete export import --help --version"
    elif [ "$COMP_CWORD" -eq 2 ] && [[ $command == @(read|write|delete) ]]; then
        words="$(quillbox-defaults list 2>/dev/null | sed -n 's/^\([^ ]*\) = .*/\1/p')"
    elif [ "$COMP_CWORD" -eq 3 ] && [ "$command" = write ]; then
        words="--bool --integer --real --string"
    elif [ "$3" = --bool ]; then
        words="true false"
    elif [[ $command == @(export|import) ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$2"; [ "$command" = export ] && compgen -W "--json" -- "$2")
        compopt -o filenames
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$2")
}
complete -F _quillbox_defaults quillbox-defaults
