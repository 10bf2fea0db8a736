# Completion of the options of sarkelo-grow, the kinds that it saves, and the keys of recipes.
_sarkelo_grow() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local options="-h --help --version -o --output --particles --steps --minutes --seed --set --resume --continue --threads
        --checkpoint --checkpoint-file --save --slices --statistics --force --quiet --print-recipe"
    local kinds="pov-sweep: pov-cones: geom: vrml: vrml-caps: vrml-low: vrml-medium: vrml-high: dxf: geom-points: stl: stl-surface:
        vtp: ply: csv: info:"
    compopt -o default
    case $before in
    --particles | --steps | --minutes | --seed | --threads | --checkpoint) COMPREPLY=() ;;
    --save) COMPREPLY=($(compgen -W "$kinds" -- "$word")) ;;
    --set)
        compopt -o nospace
        COMPREPLY=($(compgen -S = -W "$("${COMP_WORDS[0]}" --print-recipe 2>/dev/null |
            awk '/^\[/ { table = substr($1, 2, length($1) - 2) } /^(# )?[a-z_]+ =/ { sub(/^# /, ""); print table "." $1 }')" -- "$word"))
        ;;
    -*) [[ $word == -* ]] && COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
    *) COMPREPLY=() && [[ $word == -* ]] && COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
    esac
}
complete -F _sarkelo_grow sarkelo-grow
