#!/usr/bin/env bash
# Sets Tarrow up (packages, release build) and starts the tray application.
# Extra arguments go to tarrow, e.g. scripts/run.sh --data-dir /tmp/tarrow-demo
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$here/setup.sh" release
exec "$(dirname "$here")/build/release/src/app/tarrow" "$@"
