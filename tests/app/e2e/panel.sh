# Scenario of run-e2e.sh: xfce4-panel hosts the StatusNotifierItem. Checks that the item registered
# and shows the pinned countdown's label, that `xdg-open tarrow://` opens the popup, and saves a
# screenshot.
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
echo PASS
