#!/usr/bin/env bash
# Figures of the running tray application on a real desktop stack (Xvfb, a session bus,
# xfce4-panel as the panel), with 1,000 countdowns whose deadlines are all more than a day away:
#   - time from starting `tarrow` to its item being registered with the panel's watcher;
#   - resident memory (VmRSS) idle before any popup, with the popup open, and 10 s after closing;
#   - click to popup shown: from the panel's Activate call reaching the app to the popup's first
#     frame, the first time, again while the closed popup still holds its scene, and again once
#     it released it;
#   - how often the process wakes up while idle, over BENCH_SECONDS (default 180): context
#     switches of all its threads, and the engine's ticks from its log;
#   - quit: from choosing "Quit" in the panel's menu (the call xfce4-panel makes) to the process
#     having exited.
# Targets: idle <= 40 MB, popup open <= 100 MB, 10 s after closing <= 50 MB, click to shown
# <= 150 ms warm, quit <= 300 ms, about one engine tick a minute.
#
#   bench/app_bench.sh [BUILD_DIR]      (default build/release; needs the `tarrow` target built)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build/release}
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

rss_mb() {
    awk '/^VmRSS:/ {printf "%.1f", $2 / 1024}' /proc/"$app"/status
}
# Of the resident memory, what is the process's own (heap, stacks) and what is mapped files
# (libraries, fonts), in MB.
rss_split() {
    awk '/^Rss:/ {rss = $2} /^Anonymous:/ {anon = $2}
        END {printf "%.1f MB own, %.1f MB files", anon / 1024, (rss - anon) / 1024}' \
        /proc/"$app"/smaps_rollup
}
# Lines of the log matching $1, counted.
log_count() {
    grep -c -- "$1" "$log" || true
}
# Waits until the log has more than $2 lines matching $1.
await_log() {
    local pattern=$1 seen=$2
    for _ in $(seq 1 1000); do
        (($(log_count "$pattern") > seen)) && return 0
        sleep 0.01
    done
    fail "no '$pattern' in the log"
}
item_call() {
    local service=${item%%/*} path=/${item#*/}
    gdbus call --session --dest "$service" --object-path "$path" --method "$@" >/dev/null
}
# A click on the item, as the panel sends it. For an opening click, prints the time from the
# click's arrival to the popup's first frame, as the app logs it (a gdbus process starting would
# add its own start-up to a time taken out here).
click() {
    local pattern=$1 seen line
    seen=$(log_count "$pattern")
    item_call org.kde.StatusNotifierItem.Activate 1000 16
    await_log "$pattern" "$seen" >/dev/null
    line=$(grep -- "$pattern" "$log" | tail -n1)
    if [[ $line =~ ([0-9]+)\ ms ]]; then
        echo "${BASH_REMATCH[1]}"
    fi
}

export QT_LOGGING_RULES="CountdownEngine.debug=true;PopoverController.debug=true"
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
[[ -n "$registered_ms" ]] || fail "the item did not register within 5 s"
item=$(registered_item)

# "tid count" for each thread: its voluntary and involuntary context switches.
switches() {
    local task key value total
    for task in /proc/"$app"/task/*; do
        total=0
        while read -r key value _; do
            [[ $key == voluntary_ctxt_switches: || $key == nonvoluntary_ctxt_switches: ]] && total=$((total + value))
        done <"$task/status"
        echo "${task##*/} $total"
    done
}
# Context switches between two snapshots, of the threads alive in both (a worker thread that
# ends in between would take its count with it).
switches_between() {
    join <(sort "$1") <(sort "$2") | awk '{sum += $3 - $2} END {print sum + 0}'
}

sleep 5
rss_idle=$(rss_mb)
split_idle=$(rss_split)
ticks_before=$(log_count "CountdownEngine: Tick")
switches >"$out/switches-before"
sleep "$seconds"
switches >"$out/switches-after"
switched=$(switches_between "$out/switches-before" "$out/switches-after")
ticks_after=$(log_count "CountdownEngine: Tick")

# The popup: first open, close, reopen while the scene is kept, close, reopen after its release.
shown_first=$(click "Showed the popup")
sleep 2
rss_open=$(rss_mb)
split_open=$(rss_split)
click "Closed the popup" >/dev/null
sleep 1
shown_kept=$(click "Showed the popup")
sleep 1
click "Closed the popup" >/dev/null
sleep 10
rss_closed=$(rss_mb)
split_closed=$(rss_split)
grep -q "Released the popup's scene" "$log" || fail "the popup's scene was not released"
shown_rebuilt=$(click "Showed the popup")
sleep 1
click "Closed the popup" >/dev/null
sleep 1

# Quit through the panel's menu, with the call xfce4-panel makes; "Quit" is the third entry.
quit_started=$(date +%s%N)
gdbus call --session --dest "${item%%/*}" --object-path /MenuBar \
    --method com.canonical.dbusmenu.EventGroup "[(3, 'clicked', <''>, uint32 0)]" >/dev/null
quit_status=0
wait "$app" || quit_status=$?
quit_ms=$((($(date +%s%N) - quit_started) / 1000000))

echo "countdowns in the data folder:         $count"
echo "start to item registered:              $registered_ms ms"
echo "resident memory, before any popup:     $rss_idle MB   (target <= 40 MB; $split_idle)"
echo "resident memory, popup open:           $rss_open MB   (target <= 100 MB; $split_open)"
echo "resident memory, 10 s after closing:   $rss_closed MB   (target <= 50 MB; $split_closed)"
echo "click to popup shown, first time:      $shown_first ms"
echo "click to popup shown, scene kept:      $shown_kept ms"
echo "click to popup shown, scene rebuilt:   $shown_rebuilt ms   (target <= 150 ms warm)"
echo "quit from the panel menu:              $quit_ms ms, exit status $quit_status   (target <= 300 ms)"
echo "idle window:                           $seconds s"
echo "context switches, all threads:         $switched   ($((switched * 60 / seconds)) a minute)"
echo "engine ticks:                          $((ticks_after - ticks_before))   ($(((ticks_after - ticks_before) * 60 / seconds)) a minute; target: about one a minute)"
