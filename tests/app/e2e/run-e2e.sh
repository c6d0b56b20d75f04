#!/usr/bin/env bash
# `run-e2e.sh SCENARIO TARROW SCREEN_GRAB SOURCE_DIR OUTPUT_DIR`: `tarrow` with a private session
# bus, home and desktop, running the checks of SCENARIO.sh beside this script:
#   panel          Xvfb and xfce4-panel (its systray hosts StatusNotifierItems)
#   classic-tray   Xvfb and trayer, an XEmbed-only tray, started after Tarrow
#   wayland        headless sway with waybar's tray; sway refuses to run as root, so as root the
#                  scenario runs as a throw-away user made for it (and removed after)
#   package        the Debian package built from this build (TARROW_BUILD_DIR), installed into a
#                  private root and started from its desktop entry on Xvfb
# Exits 77 (skipped) when a program it needs is missing, except on CI (CI set).
set -euo pipefail

scenario=$1 tarrow=$2 grab=$3 source_dir=$4 out=$5

if [[ "${1:-}" != --inner ]]; then
    needed=(dbus-run-session dbus-update-activation-environment gdbus)
    case $scenario in
        panel) needed+=(Xvfb xfce4-panel xdg-open xdotool jq) ;;
        classic-tray) needed+=(Xvfb trayer xfce4-panel xwininfo) ;;
        wayland) needed+=(sway swaymsg waybar grim wtype xdg-open update-desktop-database jq) ;;
        package) needed+=(Xvfb cpack dpkg dpkg-deb apt-get desktop-file-validate appstreamcli
                          update-desktop-database xdg-mime xdg-open) ;;
        *) echo "run-e2e.sh: unknown scenario $scenario" >&2; exit 2 ;;
    esac
    missing=()
    for program in "${needed[@]}"; do
        command -v "$program" >/dev/null 2>&1 || missing+=("$program")
    done
    if [[ $scenario == wayland ]] && ! compgen -G "/usr/lib/*/qt6/plugins/platforms/libqwayland-*.so" >/dev/null; then
        missing+=("Qt's Wayland platform (qt6-wayland)")
    fi
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
    user=""
    if [[ $scenario == wayland && $(id -u) -eq 0 ]]; then
        # sway will not run as root: a user of our own, who gets copies of the scripts and the
        # binary (the build may sit where only root can read) and writes into the world.
        if ! command -v useradd >/dev/null || ! command -v runuser >/dev/null; then
            echo "run-e2e.sh: running as root without useradd and runuser, so sway cannot be" \
                "started as an ordinary user; skipped" >&2
            rm -rf "$world"
            exit 77
        fi
        user="tarrow-e2e-$$"
        useradd --no-create-home --home-dir "$HOME" --shell /usr/sbin/nologin "$user" ||
            { echo "run-e2e.sh: could not create the test user $user" >&2; rm -rf "$world"; exit 1; }
        trap 'userdel "$user" || echo "run-e2e.sh: could not remove the test user $user" >&2' EXIT
        mkdir -p "$world/bin" "$world/e2e" "$world/out"
        cp "$tarrow" "$world/bin/tarrow"
        cp "$(dirname "$0")"/*.sh "$world/e2e/"
        chown -R "$user:" "$world"
    fi
    status=0
    if [[ -n $user ]]; then
        runuser -u "$user" -- env HOME="$HOME" dbus-run-session -- "$world/e2e/run-e2e.sh" --inner \
            "$scenario" "$world/bin/tarrow" "$grab" "$source_dir" "$world/out" "$world" || status=$?
        cp -r "$world/out/." "$out/" 2>/dev/null || true
    else
        dbus-run-session -- "$0" --inner "$scenario" "$tarrow" "$grab" "$source_dir" "$out" "$world" ||
            status=$?
    fi
    rm -rf "$world"
    exit "$status"
fi

shift
scenario=$1 tarrow=$2 grab=$3 source_dir=$4 out=$5 world=$6
log="$out/tarrow-$scenario.log"
# shellcheck source=desktop-session.sh
source "$(dirname "$0")/desktop-session.sh"
# shellcheck source=/dev/null
source "$(dirname "$0")/$scenario.sh"
