#!/usr/bin/env bash
# Has the manual pages and completions written, and lets those read them that they are for. Of these
# bash has to be there; man, zsh and fish are asked if they are.
#
#   reference_test.sh GENERATOR PROGRAM SCRATCH-FOLDER
set -euo pipefail
generator=$1
program=$2
scratch=$3
failed=0

expect() { # WHAT WANTED FOUND
    if [ "$2" != "$3" ]; then
        printf '%s: wanted "%s", found "%s"\n' "$1" "$2" "$3" >&2
        failed=1
    fi
}

there() {
    command -v "$1" >/dev/null || { echo "no $1 here: not asked"; return 1; }
}

sorted() {
    sort | paste -sd ' '
}

rm -rf "$scratch"
"$generator" "$scratch"
cd "$scratch"

# ---- Nothing that --help tells of is missing ----

mapfile -t subcommands < <("$program" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ ${#subcommands[@]} -ge 13 ] || expect "subcommands in --help" "13 or more" "${#subcommands[@]}"

# shellcheck source=/dev/null
. ./mailserver-log.bash

offered() { # WORD...: what bash offers for the last one
    COMP_WORDS=(mailserver-log "$@")
    COMP_CWORD=$#
    COMPREPLY=()
    _mailserver_log
    echo "${COMPREPLY[*]}"
}

for subcommand in "${subcommands[@]}"; do
    page=$(echo "mailserver-log-$subcommand".[18])
    [ -f "$page" ] || expect "page of $subcommand" "a file" "none"
    options=$("$program" "$subcommand" --help | sed -n 's/^  \(-[-a-z,]*\).*/\1/p' | tr , '\n' | sorted)
    expect "options of $subcommand in bash" "$options" "$(offered "$subcommand" - | tr ' ' '\n' | sorted)"
    for option in $options; do
        grep -q -- "\\\\fB${option//-/\\\\-}\\\\fR" "$page" || expect "$page" "$option" "nothing"
        grep -q -- "'$option[=[]" _mailserver-log || expect "zsh, $subcommand" "$option" "nothing"
    done
done

# ---- bash ----

touch 'a file'
expect "subcommands" "rotate" "$(offered ro)"
expect "an argument" "mail" "$(offered rotate m)"
expect "a value" "ndjson" "$(offered list admin --format nd)"
expect "a value behind a sign" "ndjson" "$(offered list admin --format = nd)"
expect "the value of another subcommand" "" "$(offered trace --format nd)"
expect "a value that nobody knows" "" "$(offered list --since '')"
expect "a file" "a file" "$(offered call X --params a)"
expect "a subcommand behind an option of the program" "rotate" "$(offered --config x ro)"

# ---- Those that may be missing ----

if there man; then
    for page in *.[158]; do
        expect "warnings of $page" "" "$(LC_ALL=C.UTF-8 man --warnings -l "$page" 2>&1 >/dev/null)"
    done
fi
if there zsh; then
    zsh -n _mailserver-log || failed=1
fi
if there fish; then
    ask_fish() { HOME=$scratch fish --no-config -c "source mailserver-log.fish; complete -C '$1'" | cut -f 1 | sorted; }
    expect "fish, subcommands" "rotate" "$(ask_fish 'mailserver-log rot')"
    expect "fish, a value" "csv json ndjson table" "$(ask_fish 'mailserver-log list --format ')"
    expect "fish, an argument" "admin mail security" "$(ask_fish 'mailserver-log rotate ')"
fi
exit $failed
