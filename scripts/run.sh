#!/usr/bin/env bash
# Sets Tarrow up (packages, release build), installs it as a Debian package (the menu entry, the
# tarrow:// handler, the icon and the man page come with it) and starts the tray application.
# Extra arguments go to tarrow, e.g. scripts/run.sh --data-dir /tmp/tarrow-demo
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$here/setup.sh" release
"$here/install-package.sh" build/release
exec /usr/bin/tarrow "$@"
