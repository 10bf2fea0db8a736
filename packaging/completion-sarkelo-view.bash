# Completion of the options of sarkelo-view.
_sarkelo_view() {
    local word=${COMP_WORDS[COMP_CWORD]}
    compopt -o default
    COMPREPLY=()
    case ${COMP_WORDS[COMP_CWORD - 1]} in
    --mode) COMPREPLY=($(compgen -W "tubes lines points off" -- "$word")) ;;
    --surface) COMPREPLY=($(compgen -W "wireframe midpoints vertices solid off" -- "$word")) ;;
    --camera) COMPREPLY=($(compgen -W "home" -- "$word")) ;;
    --lights) COMPREPLY=($(compgen -W "camera world" -- "$word")) ;;
    --samples) COMPREPLY=($(compgen -W "1 4 9 16" -- "$word")) ;;
    *)
        [[ $word != -* ]] || COMPREPLY=($(compgen -W "-d -f -s -ss -h --help --version --picture --size --mode --surface --fit
            --camera --turn --tilt --zoom --lights --line-width --point-size --samples --turntable --film --whole --force" -- "$word"))
        ;;
    esac
}
complete -F _sarkelo_view sarkelo-view
