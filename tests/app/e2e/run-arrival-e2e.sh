#!/usr/bin/env bash
# `run-arrival-e2e.sh TARROW SCREEN_GRAB OUTPUT_DIR`: arrivals on a real notification server.
# Xvfb, a private session bus and dunst; `tarrow` with a countdown one minute away that asks for
# a notification and carries a meeting link, with a one-minute reminder, and a second countdown
# that asks for a celebration. Checks, by watching the bus and through dunstctl, that the
# reminder and the arrival are shown with the join action, that invoking the action opens the
# link with the desktop's handler, that a plain click opens the popup, and that the celebration
# shows and closes on Escape (a screenshot is saved). Exits 77 (skipped) when a program it needs
# is missing, except on CI (CI set). TARROW_E2E_LEAD_SECONDS shortens the wait (default 60).
set -euo pipefail

if [[ "${1:-}" != --inner ]]; then
    tarrow=$1 grab=$2 out=$3
    missing=()
    for program in Xvfb dbus-run-session dbus-monitor gdbus dunst dunstctl xdotool xdg-open; do
        command -v "$program" >/dev/null 2>&1 || missing+=("$program")
    done
    if ((${#missing[@]})); then
        echo "run-arrival-e2e.sh: missing ${missing[*]}" >&2
        [[ -n "${CI:-}" ]] && exit 1
        exit 77
    fi
    mkdir -p "$out"
    world=$(mktemp -d "${TMPDIR:-/tmp}/tarrow-arrival.XXXXXX")
    export HOME="$world/home" XDG_CONFIG_HOME="$world/home/.config" XDG_DATA_HOME="$world/home/.local/share"
    export XDG_CACHE_HOME="$world/home/.cache" XDG_RUNTIME_DIR="$world/run" GSETTINGS_BACKEND=memory
    export XDG_CONFIG_DIRS="$world/xdg" XDG_DATA_DIRS="$world/home/.local/share"
    export XDG_CURRENT_DESKTOP=generic DE=generic BROWSER="$world/fake-browser"
    mkdir -p "$HOME" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$world/xdg"
    mkdir -p -m 700 "$XDG_RUNTIME_DIR"
    status=0
    dbus-run-session -- "$0" --inner "$tarrow" "$grab" "$out" "$world" || status=$?
    rm -rf "$world"
    exit "$status"
fi

shift
tarrow=$1 grab=$2 out=$3 world=$4
log="$out/tarrow.log"
# shellcheck source=desktop-session.sh
source "$(dirname "$0")/desktop-session.sh"
lead=${TARROW_E2E_LEAD_SECONDS:-60}

Xvfb -displayfd 3 -screen 0 1024x600x24 -nolisten tcp 3>"$world/display" 2>"$out/xvfb.log" &
pids+=($!)
retry 100 test -s "$world/display" || fail "Xvfb did not start"
export DISPLAY=":$(head -n1 "$world/display")"
dbus-update-activation-environment DISPLAY HOME XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME \
    XDG_RUNTIME_DIR XDG_DATA_DIRS XDG_CURRENT_DESKTOP BROWSER

# The desktop's web browser (xdg-open falls back to $BROWSER): writes the link it was given.
printf '#!/bin/sh\nprintf "%%s\\n" "$1" >>"%s/opened"\n' "$world" >"$world/fake-browser"
chmod +x "$world/fake-browser"

# dunst keeps every notification until it is closed; its context menu goes to a "dmenu" that
# picks the line of the action named in $world/pick and logs what it was offered.
cat >"$world/fake-dmenu" <<SH
#!/bin/sh
tee -a "$world/menu" | grep -m1 -F "\$(cat "$world/pick")"
SH
chmod +x "$world/fake-dmenu"
mkdir -p "$XDG_CONFIG_HOME/dunst"
cat >"$XDG_CONFIG_HOME/dunst/dunstrc" <<RC
[global]
    dmenu = $world/fake-dmenu
[urgency_low]
    timeout = 0
[urgency_normal]
    timeout = 0
[urgency_critical]
    timeout = 0
RC
dunst -config "$XDG_CONFIG_HOME/dunst/dunstrc" >"$out/dunst.log" 2>&1 &
pids+=($!)
gdbus wait --session --timeout 10 org.freedesktop.Notifications || fail "dunst did not start"
dbus-monitor --session "interface='org.freedesktop.Notifications'" >"$out/bus.log" 2>&1 &
pids+=($!)

# Two countdowns: the meeting in $lead seconds with a reminder a minute ahead and a notification,
# the party 8 s later with a celebration.
iso() { date -u -d "@$1" +%Y-%m-%dT%H:%M:%S.000Z; }
now=$(date +%s)
meeting_at=$((now + lead))
party_at=$((meeting_at + 8))
meeting=6F1B2C3D-0000-4000-8000-0000000000A1
party=6F1B2C3D-0000-4000-8000-0000000000A2
data="$world/data"
mkdir -p "$data"
cat >"$data/event.json" <<JSON
{
  "schemaVersion" : 3,
  "events" : [
    { "id" : "$meeting", "title" : "Design review", "targetDate" : "$(iso "$meeting_at")",
      "includeTime" : true, "timeZone" : "UTC", "createdAt" : "$(iso "$now")",
      "celebrationAcknowledged" : false, "celebrationEnabled" : false, "notifyOnReach" : true,
      "link" : "https://meet.google.com/abc-defg-hij", "reminderLeadMinutes" : [1] },
    { "id" : "$party", "title" : "Launch party", "targetDate" : "$(iso "$party_at")",
      "includeTime" : true, "timeZone" : "UTC", "createdAt" : "$(iso "$now")",
      "celebrationAcknowledged" : false, "celebrationEnabled" : true, "notifyOnReach" : false }
  ]
}
JSON

export QT_LOGGING_RULES="ReachNotificationScheduler.debug=true;PopoverController.debug=true;CelebrationCoordinator.debug=true;CelebrationOverlay.info=true"
"$tarrow" --data-dir "$data" >"$log" 2>&1 &
pids+=($!)

# The reminder comes at once (the meeting is less than a minute away), the arrival on time.
retry 150 grep -q "Posted tarrow.reminder.$meeting" "$log" || fail "no reminder was posted"
retry $(((lead + 20) * 10)) grep -q "Posted tarrow.reached.$meeting" "$log" ||
    fail "the arrival was not posted"
arrived=$(date +%s)
((arrived >= meeting_at)) || fail "the arrival was posted $((meeting_at - arrived)) s early"
((arrived <= meeting_at + 5)) || fail "the arrival was posted $((arrived - meeting_at)) s late"
echo "Arrival posted $((arrived - meeting_at)) s after its target"

# What went over the bus: the app's name, its desktop entry, and the join action.
grep -q 'string "Tarrow"' "$out/bus.log" || fail "Notify did not carry the app name"
grep -q 'string "desktop-entry"' "$out/bus.log" || fail "Notify did not carry the desktop entry"
grep -q 'string "tarrow.action.join"' "$out/bus.log" || fail "Notify did not carry the join action"
grep -q 'string "Join Meeting"' "$out/bus.log" || fail "the join action has no label"
[[ $(dunstctl count displayed) -ge 2 ]] || fail "dunst does not show the reminder and the arrival"

# Join, picked from dunst's context menu: the link goes to the desktop's browser.
id=$(sed -n "s/.*Posted tarrow.reached.$meeting as notification \([0-9]*\).*/\1/p" "$log" | tail -n1)
echo "[$id,tarrow.action.join]" >"$world/pick"
dunstctl context
retry 100 test -s "$world/opened" || fail "invoking Join opened nothing"
grep -qx "https://meet.google.com/abc-defg-hij" "$world/opened" || fail "Join opened $(cat "$world/opened")"
grep -q "Opened the link of tarrow.reached.$meeting" "$log" || fail "tarrow did not log the join"
retry 50 grep -q "uint32 $id" <(grep -A1 'member=CloseNotification' "$out/bus.log") ||
    fail "the arrival was not closed after Join"

# A plain click on the reminder opens the popup.
dunstctl action 0
retry 100 grep -q "Opened the popup" "$log" || fail "a click on the notification did not open the popup"

# The celebration: on screen, a picture of it, and gone on Escape.
retry 150 grep -q "Celebrating on" "$log" || fail "the celebration did not start"
sleep 1.5 # some confetti in the air
"$grab" "$out/e2e-celebration.png" || fail "no screenshot"
echo "Screenshot: $out/e2e-celebration.png"
xdotool key Escape
retry 50 grep -q "Celebration dismissed" "$log" || fail "Escape did not dismiss the celebration"
echo PASS
