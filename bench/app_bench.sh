#!/usr/bin/env bash
# Figures of the running tray application on a real desktop stack (Xvfb, a session bus,
# xfce4-panel), with 1,000 countdowns whose deadlines are all more than a day away and the popup
# closed:
#   - time from starting `tarrow` to its item being registered with the panel's watcher;
#   - resident memory (VmRSS);
#   - how often the process wakes up while idle, over BENCH_SECONDS (default 180): context
#     switches of all its threads, and the engine's ticks when its log reports them.
# Targets: under 300 ms, under 60 MB, about one wake-up of the app's own timers a minute.
#
#   bench/app_bench.sh [BUILD_DIR]      (default build/app; needs the `tarrow` target built)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build/app}
tarrow="$build/src/app/tarrow"
[[ -x "$tarrow" ]] || { echo "app_bench.sh: build the tarrow target first ($tarrow)" >&2; exit 2; }
seconds=${BENCH_SECONDS:-180}

if [[ "${BENCH_INNER:-}" != 1 ]]; then
    world=$(mktemp -d "${TMPDIR:-/tmp}/tarrow-bench.XXXXXX")
    export HOME="$world/home" XDG_CONFIG_HOME="$world/home/.config" XDG_DATA_HOME="$world/home/.local/share"
    export XDG_CACHE_HOME="$world/home/.cache" XDG_RUNTIME_DIR="$world/run" GSETTINGS_BACKEND=memory
    export XDG_CONFIG_DIRS="$world/xdg" XDG_CURRENT_DESKTOP=XFCE
    mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$world/xdg"
    mkdir -p -m 700 "$XDG_RUNTIME_DIR"
    status=0
    BENCH_INNER=1 BENCH_WORLD="$world" dbus-run-session -- "$0" "$build" || status=$?
    rm -rf "$world"
    exit "$status"
fi

world=$BENCH_WORLD
out="$world/out"
mkdir -p "$out"
log="$out/tarrow.log"
# shellcheck source=../tests/app/e2e/desktop-session.sh
source "$root/tests/app/e2e/desktop-session.sh"

# 1,000 countdowns, 2 to 1,001 days ahead: one added through the command line, the rest copies
# of its record with their own ids and dates.
data="$world/data"
"$tarrow" --data-dir "$data" add "Seed" --date "$(date -u -d '+2 days' +%Y-%m-%dT%H:%M:%SZ)" >/dev/null
python3 - "$data/event.json" <<'PY'
import datetime, json, sys, uuid
path = sys.argv[1]
document = json.load(open(path))
def find_events(node):
    if isinstance(node, list) and node and isinstance(node[0], dict) and "targetDate" in node[0]:
        return node
    children = node.values() if isinstance(node, dict) else node if isinstance(node, list) else []
    for child in children:
        found = find_events(child)
        if found is not None:
            return found
events = find_events(document)
seed = events[0]
now = datetime.datetime.now(datetime.timezone.utc).replace(microsecond=0)
for n in range(1, 1000):
    copy = dict(seed)
    copy["id"] = str(uuid.uuid4()).upper()
    copy["title"] = f"Countdown {n}"
    copy["targetDate"] = (now + datetime.timedelta(days=2 + n)).strftime("%Y-%m-%dT%H:%M:%SZ")
    events.append(copy)
json.dump(document, open(path, "w"))
PY
count=$("$tarrow" --data-dir "$data" list | grep -c . || true)

start_desktop

export QT_LOGGING_RULES="CountdownEngine.debug=true"
started=$(date +%s%N)
"$tarrow" --data-dir "$data" >"$log" 2>&1 &
app=$!
pids+=("$app")
registered_ms=
for _ in $(seq 1 500); do
    if has_registered_item; then
        registered_ms=$((($(date +%s%N) - started) / 1000000))
        break
    fi
    sleep 0.01
done

switches() {
    local total=0 task value
    for task in /proc/"$app"/task/*/status; do
        while read -r key value; do
            [[ $key == voluntary_ctxt_switches: || $key == nonvoluntary_ctxt_switches: ]] && total=$((total + value))
        done <"$task"
    done
    echo "$total"
}

sleep 5
rss_kb=$(awk '/^VmRSS:/ {print $2}' /proc/"$app"/status)
ticks_before=$(grep -ci tick "$log" || true)
switches_before=$(switches)
sleep "$seconds"
switches_after=$(switches)
ticks_after=$(grep -ci tick "$log" || true)

echo "countdowns in the data folder:        $count"
echo "start to item registered:             ${registered_ms:-not registered within 5 s} ms   (target < 300 ms)"
echo "resident memory, popup closed:        $((rss_kb / 1024)) MB ($rss_kb kB)   (target < 60 MB)"
echo "idle window:                          $seconds s"
echo "context switches, all threads:        $((switches_after - switches_before))   ($(((switches_after - switches_before) * 60 / seconds)) a minute)"
echo "engine tick lines in the log:         $((ticks_after - ticks_before))   (target: about one a minute)"
