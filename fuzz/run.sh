#!/usr/bin/env bash
# Runs one libFuzzer target of the fuzz preset for a while, at the lowest priority, with its corpus
# seeded from the test fixtures. Findings land in build/fuzz/artifacts/TARGET/; keep each crashing
# input as a regression fixture under tests/fixtures with a test that loads it.
#   cmake --preset fuzz && cmake --build --preset fuzz
#   fuzz/run.sh events_file|settings_file|natural_date [SECONDS (default 1800)]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
target=${1:?usage: fuzz/run.sh events_file|settings_file|natural_date [SECONDS]}
seconds=${2:-1800}
build=$root/build/fuzz
binary=$build/fuzz/fuzz_$target
corpus=$build/corpus/$target
seeds=$build/seeds/$target
artifacts=$build/artifacts/$target
mkdir -p "$corpus" "$seeds" "$artifacts"

options=(-dict="$root/fuzz/json.dict" -max_len=65536)
case $target in
    events_file) cp "$root"/tests/fixtures/events/*.json "$seeds"/ ;;
    settings_file) cp "$root"/tests/fixtures/settings/*.json "$seeds"/ ;;
    natural_date)
        # One seed per phrase: an options byte, eight bytes of instant, the text.
        n=0
        while IFS= read -r phrase; do
            n=$((n + 1))
            { printf '\x01\x00\x00\x00\x00\x00\x00\x00\x00'; printf '%s' "$phrase"; } >"$seeds/$n"
        done <"$root/tests/fixtures/parse/phrases.txt"
        options=(-max_len=4096)
        ;;
    *) echo "unknown target $target" >&2; exit 2 ;;
esac

exec nice -n 19 "$binary" "${options[@]}" -max_total_time="$seconds" -timeout=10 \
    -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$artifacts/" "$corpus" "$seeds"
