# Completion of velkaro-scanner for bash: source it, or install it as
# share/bash-completion/completions/velkaro-scanner.

_velkaro_scanner() {
    # No word has blanks. (The bash of a Mac has no mapfile.)
    # shellcheck disable=SC2207
    COMPREPLY=($(compgen -W "-silent -log -debug -extended -ip: -login: -without: -h --help --version" -- "${COMP_WORDS[COMP_CWORD]}"))
    # The value follows its colon without a blank. (The bash of a Mac has no compopt.)
    [[ ${COMPREPLY[0]-} != *: ]] || compopt -o nospace 2>/dev/null
}

complete -F _velkaro_scanner velkaro-scanner
