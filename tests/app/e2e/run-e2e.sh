#!/usr/bin/env bash
# `run-e2e.sh SCENARIO TARROW SCREEN_GRAB SOURCE_DIR OUTPUT_DIR`: `tarrow` on Xvfb with a private
# session bus, home and panels, running the checks of SCENARIO.sh beside this script:
#   panel          xfce4-panel (its systray hosts StatusNotifierItems)
#   classic-tray   trayer, an XEmbed-only tray, started after Tarrow
# Exits 77 (skipped) when a program it needs is missing, except on CI (CI set).
set -euo pipefail

scenario=$1 tarrow=$2 grab=$3 source_dir=$4 out=$5

if [[ "${1:-}" != --inner ]]; then
    needed=(Xvfb dbus-run-session dbus-update-activation-environment gdbus)
    case $scenario in
        panel) needed+=(xfce4-panel xdg-open xdotool jq) ;;
        classic-tray) needed+=(trayer xfce4-panel xwininfo) ;;
        *) echo "run-e2e.sh: unknown scenario $scenario" >&2; exit 2 ;;
    esac
    missing=()
    for program in "${needed[@]}"; do
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
    dbus-run-session -- "$0" --inner "$scenario" "$tarrow" "$grab" "$source_dir" "$out" "$world" \
        || status=$?
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
