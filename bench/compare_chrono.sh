#!/usr/bin/env bash
# `tarrow parse --jsonl` against chrono-node (the npm date parser, English only) on the same
# English titles, end to end: each reads JSON Lines requests and writes one JSON answer a line.
# Prints CPU and wall time of both and the ratio. Run on demand; node is no build dependency.
#
#   npm install --prefix /tmp/chrono chrono-node      # outside the repository
#   CHRONO_NODE=/tmp/chrono/node_modules/chrono-node bench/compare_chrono.sh build/release/src/app/tarrow [LINES]
set -euo pipefail
tarrow=${1:?usage: compare_chrono.sh TARROW [LINES]}
lines=${2:-100000}
here=$(cd "$(dirname "$0")" && pwd)
export CHRONO_NODE=${CHRONO_NODE:-chrono-node}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

node "$here/chrono_lines.cjs" --generate "$lines" >"$work/requests.jsonl"

# CPU (user + system) and wall seconds of one run, best of three.
measure() {
    local best=
    for _ in 1 2 3; do
        /usr/bin/time -f '%U %S %e' -o "$work/time" "$@" <"$work/requests.jsonl" >"$work/out" 2>/dev/null
        local run
        run=$(awk '{ printf "%.3f %.3f", $1 + $2, $3 }' "$work/time")
        if [[ -z $best ]] || awk -v a="${run%% *}" -v b="${best%% *}" 'BEGIN { exit !(a < b) }'; then
            best=$run
        fi
    done
    echo "$best"
}

export TZ=UTC
ours=$(measure "$tarrow" parse --jsonl)
matched_ours=$(grep -c '"date"' "$work/out" || true)
theirs=$(measure node "$here/chrono_lines.cjs")
matched_theirs=$(grep -c '"date"' "$work/out" || true)

printf '%s titles (English), CPU and wall seconds, best of 3\n' "$lines"
printf '  tarrow parse --jsonl  %8s cpu %8s wall  %6s with a date\n' ${ours} "$matched_ours"
printf '  chrono-node (en)      %8s cpu %8s wall  %6s with a date\n' ${theirs} "$matched_theirs"
awk -v a="${ours%% *}" -v b="${theirs%% *}" -v c="${ours##* }" -v d="${theirs##* }" \
    'BEGIN { printf "  tarrow is %.1fx faster in CPU, %.1fx in wall time (target >= 10x)\n", b / a, d / c }'
