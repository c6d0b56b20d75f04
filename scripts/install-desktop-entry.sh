#!/usr/bin/env bash
# Installs Tarrow's desktop entry (named after the app id, org.tarrow.Tarrow.desktop) and icon for
# the current user and makes Tarrow the handler of tarrow:// links, so that `xdg-open tarrow://`
# (or a link in a browser) opens the popup. For a build that is not installed; a package or
# `cmake --install` installs the entry for everyone.
#
#   scripts/install-desktop-entry.sh [--exec PROGRAM] [-- EXTRA ARGUMENTS...]
#
# --exec names the program the entry starts (default: `tarrow` on PATH; give the path of a build
# to try one out); extra arguments are put before the link, e.g. `-- --data-dir /tmp/demo`.
# Honours XDG_DATA_HOME and XDG_CONFIG_HOME. Needs cmake, which fills in the entry's texts in the
# five languages.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(dirname "$here")
app_id=$(sed -n 's/^set(TARROW_APP_ID "\([^"]*\)")$/\1/p' "$root/CMakeLists.txt")
[[ -n $app_id ]] || { echo "install-desktop-entry.sh: no TARROW_APP_ID in CMakeLists.txt" >&2; exit 1; }
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

data_home="${XDG_DATA_HOME:-$HOME/.local/share}"
applications="$data_home/applications"
entry="$applications/$app_id.desktop"
mkdir -p "$applications"
cmake -DTEMPLATE="$root/packaging/tarrow.desktop.in" -DOUTPUT="$entry" -DFORMAT=desktop \
    -DTABLES="$root/src/core/l10n/tables" -DTARROW_APP_ID="$app_id" -DTARROW_EXEC="$exec_line" \
    -DTARROW_TRY_EXEC="${program//\\/\\\\}" -P "$root/packaging/Localize.cmake"
icons="$data_home/icons/hicolor/scalable/apps"
mkdir -p "$icons"
cp "$root/packaging/icons/tarrow.svg" "$icons/$app_id.svg"
# The entry of earlier versions, named tarrow.desktop, goes.
rm -f "$applications/tarrow.desktop"

if command -v update-desktop-database >/dev/null 2>&1; then
    update-desktop-database "$applications" || true
fi
xdg-mime default "$app_id.desktop" x-scheme-handler/tarrow
echo "Installed $entry (handler of tarrow:// links: $(xdg-mime query default x-scheme-handler/tarrow))"
