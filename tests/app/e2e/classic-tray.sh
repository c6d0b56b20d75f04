# Scenario of run-e2e.sh: Tarrow starts with no panel at all; trayer, a tray that speaks only
# XEmbed, starts later and the classic tray icon appears in it. The icon goes when trayer quits and
# comes back with the next trayer; once xfce4-panel (a StatusNotifierItem host) runs instead, the
# item moves to the panel and no classic icon is left.
start_xvfb

data="$world/data"
"$tarrow" --data-dir "$data" add "Launch party" --date "$(date -u -d '+3 days' +%Y-%m-%dT%H:%M:%SZ)" \
    >/dev/null || fail "could not add a countdown"

export QT_LOGGING_RULES="AutoStatusItemHost.debug=true;XEmbedTrayWatcher.debug=true"
"$tarrow" --data-dir "$data" >"$log" 2>&1 &
pids+=($!)
retry 100 grep -q "No XEmbed tray" "$log" || fail "Tarrow did not start watching for a tray"

start_trayer() {
    trayer --edge top --align right --widthtype request --height 32 --SetDockType true \
        >>"$out/trayer.log" 2>&1 &
    trayer_pid=$!
    pids+=("$trayer_pid")
}
stop_trayer() {
    kill "$trayer_pid"
    wait "$trayer_pid" 2>/dev/null || true
}
# Whether Tarrow's icon window sits inside trayer's window (XEmbed reparents it there).
docked_in_trayer() {
    xwininfo -root -tree | awk '/\("panel" "trayer"\)/ {inside = 1; next}
        inside && /^     0x/ {inside = 0}
        inside && /"tarrow": \("tarrow"/ {found = 1}
        END {exit !found}'
}
shows_classic_icons() {
    [[ $(grep -c "Showing the classic tray icon" "$log") -ge $1 ]]
}

sleep 2 # longer than Tarrow waits before it shows a classic icon
shows_classic_icons 1 && fail "a classic icon appeared without any tray"

start_trayer
retry 100 shows_classic_icons 1 || fail "no icon appeared in the tray started after Tarrow"
retry 50 docked_in_trayer || fail "the icon did not dock into trayer"
sleep 1 # the icon's first paint
"$grab" "$out/e2e-classic-tray.png" || fail "no screenshot"
echo "Screenshot: $out/e2e-classic-tray.png"

stop_trayer
retry 50 grep -q "The classic tray left: dropped its icon" "$log" || fail "the icon outlived its tray"
start_trayer
retry 100 shows_classic_icons 2 || fail "no icon in the second trayer"
stop_trayer

start_panel
retry 100 has_registered_item || fail "the item did not move to the panel"
sleep 2
shows_classic_icons 3 && fail "a classic icon appeared beside the panel's item"
echo PASS
