# Scenario of run-e2e.sh: a headless Wayland session. sway (headless backend, software renderer)
# runs waybar, whose tray module is the StatusNotifierWatcher and host; Tarrow runs on Qt's Wayland
# platform. Checks that the item registers and carries the countdown's label, that a first start
# opens the popup (floated by sway) on the welcome page, that its quick entry adds a countdown
# typed with wtype, and that activating the item (the call waybar makes on a click) and
# `xdg-open tarrow://` each open the popup again. Screenshots with grim.
unset DISPLAY
session="$world/sway"
mkdir -p "$session"
cat >"$session/waybar.json" <<'JSON'
{"layer": "top", "position": "top", "height": 30, "modules-right": ["tray"], "tray": {"spacing": 6}}
JSON
cat >"$session/config" <<CONFIG
xwayland disable
output HEADLESS-1 resolution 1280x800 background #3b4252 solid_color
default_border pixel 1
exec waybar -c $session/waybar.json
CONFIG
# wlroots: the headless backend with no input devices, drawn on the CPU.
WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman NO_AT_BRIDGE=1 \
    sway -c "$session/config" >"$out/sway.log" 2>&1 &
pids+=($!)
wayland_socket() { compgen -G "$XDG_RUNTIME_DIR/wayland-[0-9]" >/dev/null; }
retry 100 wayland_socket || fail "sway did not start: $(tail -n 5 "$out/sway.log")"
WAYLAND_DISPLAY=$(basename "$(compgen -G "$XDG_RUNTIME_DIR/wayland-[0-9]" | head -n1)")
SWAYSOCK=$(compgen -G "$XDG_RUNTIME_DIR/sway-ipc.*.sock" | head -n1)
export WAYLAND_DISPLAY SWAYSOCK XDG_CURRENT_DESKTOP=sway XDG_SESSION_TYPE=wayland QT_QPA_PLATFORM=wayland
dbus-update-activation-environment WAYLAND_DISPLAY SWAYSOCK XDG_CURRENT_DESKTOP HOME \
    XDG_CONFIG_HOME XDG_DATA_HOME XDG_RUNTIME_DIR XDG_DATA_DIRS
gdbus wait --session --timeout 30 org.kde.StatusNotifierWatcher || fail "waybar's tray never appeared"
host_registered() {
    gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path /StatusNotifierWatcher \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierWatcher \
        IsStatusNotifierHostRegistered | grep -q true
}
retry 100 host_registered || fail "waybar registered no tray host"
# A keyboard on the seat for the whole test: a one-shot wtype adds and removes its own, and a
# keyboard that goes away takes the popup's focus with it.
wtype -s 86400000 &
pids+=($!)

# tarrow:// links go to this binary and data folder.
data="$world/data"
mkdir -p "$XDG_DATA_HOME/applications"
cat >"$XDG_DATA_HOME/applications/org.tarrow.Tarrow.desktop" <<ENTRY
[Desktop Entry]
Type=Application
Name=Tarrow
Exec=$tarrow --data-dir $data %u
MimeType=x-scheme-handler/tarrow;
ENTRY
update-desktop-database "$XDG_DATA_HOME/applications"

"$tarrow" --data-dir "$data" add "Launch party" --date "$(date -u -d '+3 days' +%Y-%m-%dT%H:%M:%SZ)" \
    >/dev/null || fail "could not add a countdown"

export QT_LOGGING_RULES="PopoverController.debug=true;PopupNavigator.debug=true;AppDelegate.debug=true"
export TARROW_CALENDAR_BACKENDS=ics
"$tarrow" --data-dir "$data" >"$log" 2>&1 &
pids+=($!)

retry 200 has_registered_item || fail "no status item registered with waybar's watcher"
item=$(registered_item) # waybar's watcher lists "service/path"
item_property() {
    gdbus call --session --dest "${item%%/*}" --object-path "/${item#*/}" \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem "$1"
}
label=$(item_property XAyatanaLabel)
echo "Registered item $item, label $label"
[[ "$label" == *"Launch party"* ]] || fail "the item's label is $label"
sleep 0.5 # waybar draws the item
grim "$out/e2e-wayland-panel.png" || fail "no screenshot"

opened() { grep -c "Opened the popup" "$log" || true; }
opened_more_than() { [[ $(opened) -gt $1 ]]; }
closed() { grep -c "Closed the popup" "$log" || true; }
closed_more_than() { [[ $(closed) -gt $1 ]]; }
floating_popup() {
    swaymsg -t get_tree | jq -e '[.. | objects | select(.app_id? == "org.tarrow.Tarrow")
        | select(.type == "floating_con" and .visible)] | length == 1' >/dev/null
}
expect_floating_popup() {
    retry 50 floating_popup || fail "the popup is not a floating window: $(swaymsg -t get_tree | jq -c '[.. | objects | select(.app_id? != null) | {app_id, type, visible, rect}]')"
}

# A first start opens the popup by itself on the welcome page; sway floats it.
retry 100 opened_more_than 0 || fail "a first start did not open the popup"
retry 50 grep -q "Showing the welcome page" "$log" || fail "a first start did not show the welcome page"
expect_floating_popup
sleep 1.5 # the first frame of the popup

# Quick entry on the welcome page has the focus: a title with a date, Enter adds it.
events="$data/event.json"
wtype -d 30 "Dentist tomorrow at 3pm"
sleep 1 # the date is read once typing pauses
wtype -k Return
retry 100 jq -e '[.events[] | select(.title == "Dentist" and .includeTime)] | length == 1' "$events" ||
    fail "quick entry added no countdown: $(jq -c '[.events[] | {title, includeTime}]' "$events")"
echo "Added: $(jq -c '.events[] | select(.title == "Dentist") | {title, targetDate}' "$events")"
sleep 0.5
grim "$out/e2e-wayland-added.png" || fail "no screenshot"

# Escape closes the popup; a click on the item in waybar's tray opens it again. The headless seat
# has no pointer, so the test makes the call waybar makes on a click: Activate at the pointer.
wtype -k Escape
retry 50 closed_more_than 0 || fail "Escape did not close the popup"
gdbus call --session --dest "${item%%/*}" --object-path "/${item#*/}" \
    --method org.kde.StatusNotifierItem.Activate 1240 15 >/dev/null || fail "Activate failed"
retry 100 opened_more_than 1 || fail "activating the item did not open the popup"
expect_floating_popup
sleep 1
grim "$out/e2e-wayland-popup.png" || fail "no screenshot"

# And after Escape, a tarrow:// link.
wtype -k Escape
retry 50 closed_more_than 1 || fail "Escape did not close the popup the item opened"
xdg-open tarrow://open || fail "xdg-open tarrow:// failed"
retry 100 opened_more_than 2 || fail "the popup did not open for tarrow://"
expect_floating_popup
echo "Screenshots: $out/e2e-wayland-*.png"
echo PASS
