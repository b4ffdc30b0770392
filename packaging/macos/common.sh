# Sourced by the other scripts here, which are run as `SCRIPT [--dry-run] FOLDER`: all their output is in FOLDER, whose root/ is what the
# package installs. With --dry-run they only print what they would run.
# shellcheck shell=sh disable=SC2034
set -eu
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
dry_run=
if [ "${1-}" = --dry-run ]; then
    dry_run=yes
    shift
fi

identifier=com.velkaro.scanner
version=$(sed -n 's/^project(velkaro-scanner VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
programs="velkaro-scanner inv"

# quoted WORD: quotes it for a shell.
quoted() {
    case $1 in
    '' | *[!A-Za-z0-9_./:=@%+,-]*) printf "'%s'" "$(printf %s "$1" | sed "s/'/'\\\\''/g")" ;;
    *) printf %s "$1" ;;
    esac
}

# run COMMAND [ARGUMENT...]: prints the command, then runs it.
run() {
    line=+
    for word; do line="$line $(quoted "$word")"; done
    printf '%s\n' "$line"
    [ -n "$dry_run" ] || "$@"
}

[ $# -eq 1 ] || { echo "usage: $0 [--dry-run] FOLDER" >&2; exit 2; }
folder=$1
