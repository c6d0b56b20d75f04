#!/usr/bin/env bash
# Sets Tarrow up (packages, development build with warnings as errors) and runs every test.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
"$here/setup.sh" dev
cd "$(dirname "$here")"
ctest --preset dev -j "$(nproc)"
