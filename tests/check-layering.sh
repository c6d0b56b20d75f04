#!/usr/bin/env bash
# Fails when a file under src/ includes a project header from a folder above its own layer.
# A folder may include its own headers and those of folders with a lower rank; folders of the
# same rank (siblings) do not include each other.
#   check-layering.sh SRC_DIR
set -euo pipefail
src=${1:?usage: check-layering.sh SRC_DIR}

rank_of() {
    case $1 in
        core/json) echo 10 ;;
        core/records) echo 20 ;;
        core/storage) echo 30 ;;
        core/l10n) echo 40 ;;
        core/parse) echo 40 ;;
        core/time) echo 50 ;;
        core/calendar) echo 55 ;;
        core/backup) echo 55 ;;
        core/countdown) echo 60 ;;
        core/arrival) echo 70 ;;
        core/automation) echo 70 ;;
        core/shortcuts) echo 70 ;;
        platform/calendars/eds) echo 110 ;; # a plugin over the calendars library
        platform/*) echo 100 ;;
        cli | ui | ui/celebration) echo 200 ;;
        app) echo 300 ;;
        *) echo "" ;;
    esac
}

# The folder of a file or header path relative to src/ ("core/time/Clock.h" -> "core/time").
folder_of() {
    local dir=${1%/*}
    echo "$dir"
}

failures=0
while IFS= read -r file; do
    rel=${file#"$src"/}
    from=$(folder_of "$rel")
    from_rank=$(rank_of "$from")
    if [[ -z $from_rank ]]; then
        echo "$rel: folder $from has no layer (add it to check-layering.sh)"
        failures=$((failures + 1))
        continue
    fi
    while IFS= read -r header; do
        if [[ -f $src/core/$header ]]; then
            target=core/$header
        elif [[ -f $src/$header ]]; then
            target=$header
        else
            continue  # generated or a system header in quotes
        fi
        to=$(folder_of "$target")
        [[ $to == "$from" ]] && continue
        to_rank=$(rank_of "$to")
        if [[ -z $to_rank || $to_rank -ge $from_rank ]]; then
            echo "$rel includes \"$header\" from $to, which is not below $from"
            failures=$((failures + 1))
        fi
    done < <(sed -n 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"\([^"]*\)".*/\1/p' "$file")
done < <(find "$src" -type f \( -name '*.h' -o -name '*.cpp' \) | sort)

if ((failures)); then
    echo "$failures include(s) against the layers"
    exit 1
fi
echo "layering: every include points to its own folder or a lower one"
