#!/usr/bin/env bash
# Builds the Debian packages of a build folder with CPack and installs them with apt, which also
# installs what they depend on. Usage: scripts/install-package.sh [BUILD_DIR]  (default:
# build/release, which scripts/setup.sh release makes). Uses sudo when not run as root.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$(cd "$root" && realpath "${1:-build/release}")
[[ -f "$build/CPackConfig.cmake" ]] || { echo "install-package.sh: $build is not a configured build" >&2; exit 1; }
rm -rf "$build/packages"
(cd "$build" && cpack -G DEB -B "$build/packages" >/dev/null)
sudo_cmd=()
[[ $(id -u) -eq 0 ]] || sudo_cmd=(sudo)
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --reinstall --no-install-recommends \
    "$build"/packages/*.deb
echo "Installed: $(cd "$build/packages" && ls -- *.deb | tr '\n' ' ')"
