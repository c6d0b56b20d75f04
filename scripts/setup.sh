#!/usr/bin/env bash
# Installs the Debian packages Tarrow needs (only the missing ones) and builds it.
# Usage: scripts/setup.sh [dev|release]   (default: release)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(dirname "$here")
preset=${1:-release}

mapfile -t wanted < <(sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$here/packages.txt")
missing=()
for pkg in "${wanted[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$pkg")
    fi
done
if ((${#missing[@]})); then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    [[ $(id -u) -eq 0 ]] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

cd "$root"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$(nproc)"
