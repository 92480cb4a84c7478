# bash completion for tolvar

_tolvar_sources()
{
    tolvar list 2>/dev/null | cut -c3- | awk '{print $1}'
}

_tolvar()
{
    local cur="${COMP_WORDS[COMP_CWORD]}"
    local commands="status list set apply open install uninstall pause resume toggle help version doctor"
    local words=() word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [ "$word" = "--json" ] || words+=("$word")
    done

    if [ ${#words[@]} -eq 0 ]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands --json --help --version" -- "$cur")
    elif [ ${#words[@]} -eq 1 ] && { [ "${words[0]}" = set ] || [ "${words[0]}" = install ]; }; then
        mapfile -t COMPREPLY < <(compgen -W "$(_tolvar_sources) --json" -- "$cur")
    else
        mapfile -t COMPREPLY < <(compgen -W "--json" -- "$cur")
    fi
    # Identifiers contain colons; keep them whole.
    if declare -F __ltrim_colon_completions >/dev/null; then
        __ltrim_colon_completions "$cur"
    fi
}

complete -F _tolvar tolvar
