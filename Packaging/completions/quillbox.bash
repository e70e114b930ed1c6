# Completion of quillbox in bash.
_quillbox()
{
    local words="--menu --autostart --help --version"
    [ "$3" = --autostart ] && words="on off"
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$2")
}
complete -F _quillbox quillbox
