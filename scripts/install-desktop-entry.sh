#!/usr/bin/env bash
# Installs Tarrow's desktop entry for the current user and makes Tarrow the handler of tarrow://
# links, so that `xdg-open tarrow://` (or a link in a browser) opens the popup.
#
#   scripts/install-desktop-entry.sh [--exec PROGRAM] [-- EXTRA ARGUMENTS...]
#
# --exec names the program the entry starts (default: `tarrow` on PATH; give the path of a build
# to try one out); extra arguments are put before the link, e.g. `-- --data-dir /tmp/demo`.
# Honours XDG_DATA_HOME and XDG_CONFIG_HOME.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
template="$here/../packaging/tarrow.desktop"
program=tarrow
while [[ $# -gt 0 ]]; do
    case "$1" in
        --exec) program=$2; shift 2 ;;
        --) shift; break ;;
        *) echo "install-desktop-entry.sh: unknown argument $1" >&2; exit 2 ;;
    esac
done

# Exec quoting of the desktop entry format: arguments with reserved characters go in double
# quotes, with " ` $ and \ escaped (and every backslash doubled once more by the string rule).
quote() {
    local arg=$1
    if [[ $arg =~ [[:space:]\"\'\\\>\<~\|\&\;\$\*\?\#\(\)\`] ]]; then
        arg=${arg//\\/\\\\}
        arg=${arg//\"/\\\"}
        arg=${arg//\`/\\\`}
        arg=${arg//\$/\\\$}
        arg=${arg//\\/\\\\}
        printf '"%s"' "$arg"
    else
        printf '%s' "$arg"
    fi
}

exec_line=$(quote "$program")
for extra in "$@"; do
    exec_line+=" $(quote "$extra")"
done
exec_line+=" %u"

applications="${XDG_DATA_HOME:-$HOME/.local/share}/applications"
mkdir -p "$applications"
while IFS= read -r line; do
    case "$line" in
        Exec=*) printf 'Exec=%s\n' "$exec_line" ;;
        TryExec=*) printf 'TryExec=%s\n' "${program//\\/\\\\}" ;;
        *) printf '%s\n' "$line" ;;
    esac
done < "$template" > "$applications/tarrow.desktop.new"
mv "$applications/tarrow.desktop.new" "$applications/tarrow.desktop"

if command -v update-desktop-database >/dev/null 2>&1; then
    update-desktop-database "$applications" || true
fi
xdg-mime default tarrow.desktop x-scheme-handler/tarrow
echo "Installed $applications/tarrow.desktop (handler of tarrow:// links: $(xdg-mime query default x-scheme-handler/tarrow))"
