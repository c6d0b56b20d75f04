# Shared by the end-to-end test and the benchmarks: a throw-away desktop inside the current
# session bus (run under dbus-run-session). Needs $world (a private folder) and $out (where logs
# go). Every process started here is ended by its PID when the script exits.
pids=()
cleanup() {
    for ((i = ${#pids[@]} - 1; i >= 0; i--)); do
        kill "${pids[i]}" 2>/dev/null || true
        wait "${pids[i]}" 2>/dev/null || true
    done
}
trap cleanup EXIT
fail() {
    echo "FAIL: $*" >&2
    [[ -n "${log:-}" ]] && { echo "--- tarrow log ---" >&2; cat "$log" >&2 2>/dev/null || true; }
    exit 1
}
# Repeats a command until it succeeds, for at most $1 tenths of a second.
retry() {
    local tries=$1
    shift
    until "$@" >/dev/null 2>&1; do
        ((--tries > 0)) || return 1
        sleep 0.1
    done
}

# Starts Xvfb on a free display and xfce4-panel with only the notification area (the
# StatusNotifierItem host) and waits for the panel's watcher.
start_desktop() {
    start_xvfb
    start_panel
}

start_xvfb() {
    # Xvfb reports the free display it took once it accepts connections.
    Xvfb -displayfd 3 -screen 0 1024x600x24 -nolisten tcp 3>"$world/display" 2>"$out/xvfb.log" &
    pids+=($!)
    retry 100 test -s "$world/display" || fail "Xvfb did not start"
    export DISPLAY=":$(head -n1 "$world/display")"
    dbus-update-activation-environment DISPLAY XDG_CURRENT_DESKTOP HOME XDG_CONFIG_HOME XDG_DATA_HOME \
        XDG_CACHE_HOME XDG_RUNTIME_DIR XDG_CONFIG_DIRS XDG_DATA_DIRS GSETTINGS_BACKEND
}

start_panel() {
    # A one-plugin panel at the top: the notification area (systray), which hosts
    # StatusNotifierItems. The xfconf channel spares the first-run dialog.
    channel="$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml"
    mkdir -p "$channel"
    cat >"$channel/xfce4-panel.xml" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
XML
    xfce4-panel --disable-wm-check >>"$out/panel.log" 2>&1 &
    panel_pid=$!
    pids+=("$panel_pid")
    gdbus wait --session --timeout 30 org.kde.StatusNotifierWatcher || fail "the panel's tray never appeared"
}

# The first item registered with the watcher ("service/path" or a bus name), empty when none.
registered_item() {
    gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path /StatusNotifierWatcher \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierWatcher \
        RegisteredStatusNotifierItems | grep -o "'[^']*'" | head -n1 | tr -d "'"
}
has_registered_item() {
    [[ -n "$(registered_item)" ]]
}
