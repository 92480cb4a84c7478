# fish completion for tolvar

function __tolvar_needs_command
    set -l words (commandline -opc)
    set -e words[1]
    for word in $words
        test "$word" = --json; or return 1
    end
    return 0
end

function __tolvar_needs_source
    set -l words (commandline -opc)
    set -e words[1]
    set -l rest
    for word in $words
        test "$word" = --json; or set -a rest $word
    end
    test (count $rest) -eq 1; and contains -- $rest[1] set install
end

function __tolvar_sources
    tolvar list 2>/dev/null | string sub -s 3 | string replace -r '^(\S+)  (.*)$' '$1'
end

complete -c tolvar -f
complete -c tolvar -l json
complete -c tolvar -n __tolvar_needs_command -a status
complete -c tolvar -n __tolvar_needs_command -a list
complete -c tolvar -n __tolvar_needs_command -a set
complete -c tolvar -n __tolvar_needs_command -a apply
complete -c tolvar -n __tolvar_needs_command -a open
complete -c tolvar -n __tolvar_needs_command -a install
complete -c tolvar -n __tolvar_needs_command -a uninstall
complete -c tolvar -n __tolvar_needs_command -a pause
complete -c tolvar -n __tolvar_needs_command -a resume
complete -c tolvar -n __tolvar_needs_command -a toggle
complete -c tolvar -n __tolvar_needs_command -a help
complete -c tolvar -n __tolvar_needs_command -a version
complete -c tolvar -n __tolvar_needs_command -a doctor
complete -c tolvar -n __tolvar_needs_command -l help
complete -c tolvar -n __tolvar_needs_command -l version
complete -c tolvar -n __tolvar_needs_source -a '(__tolvar_sources)'
