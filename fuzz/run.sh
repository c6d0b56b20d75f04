#!/usr/bin/env bash
# Runs one libFuzzer target of the fuzz preset for a while, at the lowest priority, with its corpus
# seeded from the test fixtures. Findings land in build/fuzz/artifacts/TARGET/; keep each crashing
# input as a regression fixture under tests/fixtures with a test that loads it.
#   cmake --preset fuzz && cmake --build --preset fuzz
#   fuzz/run.sh events_file|settings_file|natural_date|backup_archive|ics_calendar [SECONDS (default 1800)]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
target=${1:?usage: fuzz/run.sh events_file|settings_file|natural_date|backup_archive|ics_calendar [SECONDS]}
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
    backup_archive)
        # The events of each events fixture, as a backup of them.
        python3 - "$root"/tests/fixtures/events/*.json "$seeds" <<'PY'
import json, os, sys
for path in sys.argv[1:-1]:
    try:
        events = json.load(open(path, encoding='utf-8-sig')).get('events')
    except (ValueError, AttributeError):
        continue
    if isinstance(events, list):
        archive = {'events': events, 'exportedAt': '2026-01-01T00:00:00.000Z',
                   'kind': 'org.tarrow.Tarrow.backup', 'version': 1}
        json.dump(archive, open(os.path.join(sys.argv[-1], os.path.basename(path)), 'w'), indent=2)
PY
        ;;
    ics_calendar)
        cp "$root"/tests/fixtures/calendars/*.ics "$seeds"/
        # A rule may step 200,000 times before it is given up, which takes seconds under the
        # sanitizers: allow for that before calling an input a hang.
        options=(-dict="$root/fuzz/ics.dict" -max_len=65536 -timeout=30)
        ;;
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

# Refusals are logged; at fuzzing speed the log would cost more than the code under test.
export QT_LOGGING_RULES="*=false"
exec nice -n 19 "$binary" -timeout=10 "${options[@]}" -max_total_time="$seconds" \
    -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$artifacts/" "$corpus" "$seeds"
