# Completion of sarkelo's switches.
_sarkelo() {
    COMPREPLY=($(compgen -W "-h -d -f -s -ss" -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -F _sarkelo sarkelo
