# Completion of inv for bash: source it, or install it as share/bash-completion/completions/inv.

_inv() {
    local current=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]} words
    local signed="--allowed-signers --signature --identity --revoked-keys"
    local commands="summary show get list verify export diff unpack report load redact query policy schema help"
    local listed="--files-from -0 --null"
    local many="$listed --jobs"
    COMPREPLY=()
    # For bash, "--format=csv" is three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $option == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case $COMP_CWORD,$option in
    1,*) words="$commands -h --help --version" ;;
    *,-f | *,--format)
        case ${COMP_WORDS[1]} in
        query) words="table csv json" ;;
        policy) words="table json junit" ;;
        diff) words="text markdown json" ;;
        schema) words="json-schema sql duckdb clickhouse postgresql" ;;
        *) words="json ndjson csv zxml" ;;
        esac
        ;;
    *,--table) words="machines software disks volumes memory displays adapters accounts processes packages security" ;;
    *,--sort) words="name model serial system memory disk age" ;;
    *,--section) words="snapshot asset" ;;
    *,--color) words="auto always never" ;;
    2,help) words="$commands -h --help --color" ;;
    *,-o | *,--output | *,--depth | *,--key | *,--key-file | *,--salt-of | *,--max-size | *,--timeout | *,--jobs) return ;;
    *,--allowed-signers | *,--signature | *,--identity | *,--revoked-keys | *,--files-from | *,--quarantine) return ;;
    *)
        # Without a word here, bash offers files.
        [[ $current == -* ]] || return
        case ${COMP_WORDS[1]} in
        get) words="--no-filename -H --with-filename --json --trim $listed" ;;
        list) words="$listed" ;;
        unpack) words="" ;;
        summary) words="--sort --json $listed $signed" ;;
        load) words="$many --quarantine $signed --secrets" ;;
        show) words="--section --depth $listed" ;;
        verify) words="-q --quiet --failures --strict $many $signed" ;;
        export) words="-f --format --table -o --output --csv-safe --force --secrets $many --quarantine" ;;
        query) words="-f --format --csv-safe --timeout --secrets $listed" ;;
        policy) words="-f --format --timeout --secrets $listed" ;;
        diff) words="--all -f --format --json --secrets" ;;
        report) words="--compare -o --output --force --secrets $listed" ;;
        schema) words="-f --format --table" ;;
        redact) words="-o --output --key --key-file --salt-of --drop-opaque --force" ;;
        *) return ;;
        esac
        words+=" -h --help --color"
        [[ ${COMP_WORDS[1]} == schema ]] || words+=" --max-size"
        ;;
    esac
    # None of the words has blanks. (The bash of a Mac has no mapfile.)
    # shellcheck disable=SC2207
    COMPREPLY=($(compgen -W "$words" -- "$current"))
}

complete -o default -F _inv inv
