#!/usr/bin/env bash
# `run-e2e.sh TARROW SCREEN_GRAB SOURCE_DIR OUTPUT_DIR`: `tarrow` on Xvfb, a private session bus
# and xfce4-panel (its systray hosts StatusNotifierItems). Checks that the item registered and
# shows the pinned countdown's label, that `xdg-open tarrow://` opens the popup, and saves a
# screenshot. Exits 77 (skipped) when a program it needs is missing, except on CI (CI set).
set -euo pipefail

tarrow=$1 grab=$2 source_dir=$3 out=$4

if [[ "${1:-}" != --inner ]]; then
    missing=()
    for program in Xvfb dbus-run-session dbus-update-activation-environment xfce4-panel gdbus \
        xdg-open; do
        command -v "$program" >/dev/null 2>&1 || missing+=("$program")
    done
    if ((${#missing[@]})); then
        echo "run-e2e.sh: missing ${missing[*]}" >&2
        [[ -n "${CI:-}" ]] && exit 1
        exit 77
    fi
    mkdir -p "$out"
    world=$(mktemp -d "${TMPDIR:-/tmp}/tarrow-e2e.XXXXXX")
    # The environment comes first: services the bus starts later inherit the bus's, not ours.
    export HOME="$world/home" XDG_CONFIG_HOME="$world/home/.config" XDG_DATA_HOME="$world/home/.local/share"
    export XDG_CACHE_HOME="$world/home/.cache" XDG_RUNTIME_DIR="$world/run" GSETTINGS_BACKEND=memory
    export XDG_CONFIG_DIRS="$world/xdg" XDG_DATA_DIRS="$world/home/.local/share:/usr/local/share:/usr/share"
    export XDG_CURRENT_DESKTOP=XFCE DE=generic
    mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$world/xdg"
    mkdir -p -m 700 "$XDG_RUNTIME_DIR"
    status=0
    dbus-run-session -- "$0" --inner "$tarrow" "$grab" "$source_dir" "$out" "$world" || status=$?
    rm -rf "$world"
    exit "$status"
fi

shift
tarrow=$1 grab=$2 source_dir=$3 out=$4 world=$5
log="$out/tarrow.log"
# shellcheck source=desktop-session.sh
source "$(dirname "$0")/desktop-session.sh"
start_desktop

# tarrow:// links go to this build with this data folder.
data="$world/data"
"$source_dir/scripts/install-desktop-entry.sh" --exec "$tarrow" -- --data-dir "$data" >/dev/null

# One countdown, so the item has a label to show.
"$tarrow" --data-dir "$data" add "Launch party" --date "$(date -u -d '+3 days' +%Y-%m-%dT%H:%M:%SZ)" \
    >/dev/null || fail "could not add a countdown"

export QT_LOGGING_RULES="SingleInstance.debug=true;PopoverController.debug=true;AppDelegate.debug=true"
"$tarrow" --data-dir "$data" >"$log" 2>&1 &
pids+=($!)

retry 200 has_registered_item || fail "no status item registered with the watcher"
item=$(registered_item) # xfce4-panel's watcher lists "service/path"
label=$(gdbus call --session --dest "${item%%/*}" --object-path "/${item#*/}" \
    --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem XAyatanaLabel)
echo "Registered item $item, label $label"
[[ "$label" == *"Launch party"* ]] || fail "the item's label is $label"

xdg-open tarrow://open || fail "xdg-open tarrow:// failed"
retry 100 grep -q "Opened the popup" "$log" || fail "the popup did not open for tarrow://"
sleep 2 # the first frame of the popup (software GL) takes a moment
"$grab" "$out/e2e-popup.png" || fail "no screenshot"
echo "Screenshot: $out/e2e-popup.png"

# A countdown added and pinned from a terminal reaches the running app's panel item and popup.
item_label() {
    gdbus call --session --dest "${item%%/*}" --object-path "/${item#*/}" \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem XAyatanaLabel
}
label_shows() { [[ "$(item_label)" == *"$1"* ]]; }
id=$("$tarrow" --data-dir "$data" add "From a terminal" \
    --date "$(date -u -d '+2 days' +%Y-%m-%dT%H:%M:%SZ)") || fail "could not add from a terminal"
"$tarrow" --data-dir "$data" pin "$id" || fail "could not pin from a terminal"
retry 30 label_shows "From a terminal" || fail "the item still shows $(item_label)"
sleep 1
"$grab" "$out/e2e-popup-after-command.png" || fail "no screenshot"
echo "Screenshot: $out/e2e-popup-after-command.png"
echo PASS
