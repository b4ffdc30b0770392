# Read by every tool in bin/: what they have in common. POSIX shell; the tools come first on PATH and hide the real
# `ls`, so nothing here may rely on it.

tool=${0##*/}

# A scan that asks for something that was not recorded must not go on with a guess.
refuse() {
    printf '%s: no recording answers: %s %s\n' "$tool" "$tool" "$*" >&2
    exit 64
}

# Prints one recording, named relative to the machine's folder. A Mac that says nothing is a file that is not there.
replay() {
    [ -f "$VELKARO_MACHINE/$1" ] || return 0
    cat <"$VELKARO_MACHINE/$1"
}

# For a tool that not every Mac has: without a recording it is missing, in the words of the shell.
replay_tool() {
    [ -f "$VELKARO_MACHINE/tools/$tool.txt" ] || {
        printf 'sh: %s: command not found\n' "$tool" >&2
        exit 127
    }
    replay "tools/$tool.txt"
}

# A name becomes a file's name; one that could leave its folder has no recording.
replay_named() {
    case $2 in
    */*) ;;
    *) replay "$1/$2.txt" ;;
    esac
}

[ -n "$VELKARO_MACHINE" ] || {
    printf '%s: VELKARO_MACHINE is not set, start the command with simulator/run\n' "$tool" >&2
    exit 64
}
