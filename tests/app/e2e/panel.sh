# Scenario of run-e2e.sh: xfce4-panel hosts the StatusNotifierItem. Checks that the item registered
# and shows the pinned countdown's label, that `xdg-open tarrow://` opens the popup; then, typing
# with xdotool, adds, edits, pins and deletes a countdown through the popup and checks the events
# file after each step; opens the settings with tarrow://settings and brings back the welcome page
# with `tarrow --reset-onboarding`. Saves screenshots.
start_desktop

# tarrow:// links go to this build with this data folder.
data="$world/data"
"$source_dir/scripts/install-desktop-entry.sh" --exec "$tarrow" -- --data-dir "$data" >/dev/null

# One countdown, so the item has a label to show.
"$tarrow" --data-dir "$data" add "Launch party" --date "$(date -u -d '+3 days' +%Y-%m-%dT%H:%M:%SZ)" \
    >/dev/null || fail "could not add a countdown"

# A user who has been through the welcome page: the popup opens by itself on the list.
mkdir -p "$XDG_CONFIG_HOME/tarrow"
printf '[General]\ntarrow.onboarding.completed=true\n' >"$XDG_CONFIG_HOME/tarrow/tarrow.conf"

export QT_LOGGING_RULES="SingleInstance.debug=true;PopoverController.debug=true;AppDelegate.debug=true;PopupNavigator.debug=true;SettingsWindow.debug=true"
"$tarrow" --data-dir "$data" >"$log" 2>&1 &
pids+=($!)

retry 200 has_registered_item || fail "no status item registered with the watcher"
item=$(registered_item) # xfce4-panel's watcher lists "service/path"
label=$(gdbus call --session --dest "${item%%/*}" --object-path "/${item#*/}" \
    --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem XAyatanaLabel)
echo "Registered item $item, label $label"
[[ "$label" == *"Launch party"* ]] || fail "the item's label is $label"

retry 100 grep -q "Opened the popup" "$log" || fail "the popup did not open at launch"
opened_before=$(grep -c "Opened the popup" "$log")
opened_again() { [[ $(grep -c "Opened the popup" "$log") -gt $opened_before ]]; }
xdg-open tarrow://open || fail "xdg-open tarrow:// failed"
retry 100 opened_again || fail "the popup did not open for tarrow://"
sleep 2 # the first frame of the popup (software GL) takes a moment
"$grab" "$out/e2e-popup.png" || fail "no screenshot"
echo "Screenshot: $out/e2e-popup.png"

# The popup as a person uses it, from the keyboard. Keys go to the window that has the focus.
popup=$(xdotool search --sync --name '^Tarrow$' | head -n1)
[[ -n "$popup" ]] || fail "no popup window"
keys() { xdotool windowactivate --sync "$popup" >/dev/null 2>&1 || true; xdotool key --delay 60 "$@"; }
typed() { xdotool windowactivate --sync "$popup" >/dev/null 2>&1 || true; xdotool type --delay 40 "$1"; }
events="$data/event.json"
# Waits until jq's `$1` on the events file is true.
expect() {
    retry 100 jq -e "$1" "$events" || fail "event.json: expected $1, found $(jq -c '[.events[] | {title, includeTime, targetDate}], .pin' "$events")"
}

# Add: Ctrl+N, a title with a date in it; Enter takes the date, Enter again saves.
keys ctrl+n
retry 50 grep -q "Showing the editor page" "$log" || fail "Ctrl+N did not open the editor"
typed "Dentist tomorrow at 3pm"
sleep 1 # the date is read once typing pauses
keys Return
sleep 0.3
keys Return
expect '[.events[] | select(.title == "Dentist" and .includeTime)] | length == 1'
echo "Added: $(jq -c '.events[] | select(.title == "Dentist") | {title, targetDate}' "$events")"

# Edit: the first row (the dentist, tomorrow), Enter, a new title, Ctrl+S.
keys Down Return
sleep 0.5
keys ctrl+a
typed "Dentist checkup"
keys ctrl+s
expect '[.events[] | select(.title == "Dentist checkup")] | length == 1'
expect '[.events[] | select(.title == "Dentist")] | length == 0'

# Pin: Ctrl+P on the same row pins it to the panel.
keys ctrl+p
expect '.pin.kind == "manual" and .pin.id == ([.events[] | select(.title == "Dentist checkup")][0].id)'
"$grab" "$out/e2e-pinned.png" || fail "no screenshot"

# Delete: the Delete key removes it (and its pin); the other countdown stays.
keys Delete
expect '([.events[] | select(.title == "Dentist checkup")] | length == 0) and .pin == null'
expect '[.events[] | select(.title == "Launch party")] | length == 1'
echo "Added, edited, pinned and deleted through the popup"

# A calendar added while the app runs: its meeting in 90 minutes takes the panel from the
# countdown three days away.
item_label() {
    gdbus call --session --dest "${item%%/*}" --object-path "/${item#*/}" \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem XAyatanaLabel
}
printf 'BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//e2e//EN\r\nBEGIN:VEVENT\r\nUID:review\r\nDTSTART:%s\r\nDURATION:PT30M\r\nSUMMARY:Design review\r\nLOCATION:https://acme.zoom.us/j/42\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n' \
    "$(date -u -d '+90 minutes' +%Y%m%dT%H%M%SZ)" >"$world/work.ics"
"$tarrow" --data-dir "$data" calendars add "$world/work.ics" >/dev/null || fail "could not add a calendar"
retry 100 bash -c "$(declare -f item_label); item=$item; item_label | grep -q 'Design review'" ||
    fail "the panel does not show the calendar's meeting: $(item_label)"
echo "Calendar meeting in the panel: $(item_label)"

# A countdown added and pinned from a terminal reaches the running app's panel item and popup.
label_shows() { [[ "$(item_label)" == *"$1"* ]]; }
id=$("$tarrow" --data-dir "$data" add "From a terminal" \
    --date "$(date -u -d '+2 days' +%Y-%m-%dT%H:%M:%SZ)") || fail "could not add from a terminal"
"$tarrow" --data-dir "$data" pin "$id" || fail "could not pin from a terminal"
retry 30 label_shows "From a terminal" || fail "the item still shows $(item_label)"
sleep 1
"$grab" "$out/e2e-popup-after-command.png" || fail "no screenshot"
echo "Screenshot: $out/e2e-popup-after-command.png"

# tarrow://settings opens the settings window.
xdg-open tarrow://settings || fail "xdg-open tarrow://settings failed"
retry 100 grep -q "Opened the settings window" "$log" || fail "tarrow://settings did not open settings"
sleep 1.5
"$grab" "$out/e2e-settings.png" || fail "no screenshot"

# Support brings the welcome page back.
"$tarrow" --data-dir "$data" --reset-onboarding || fail "tarrow --reset-onboarding failed"
retry 100 grep -q "Showing the welcome page" "$log" || fail "--reset-onboarding did not show the welcome page"
grep -q "tarrow.onboarding.completed" "$XDG_CONFIG_HOME/tarrow/tarrow.conf" &&
    fail "--reset-onboarding left the onboarding flag"
sleep 1.5
"$grab" "$out/e2e-welcome.png" || fail "no screenshot"
echo "Screenshots: $out/e2e-*.png"
echo PASS
