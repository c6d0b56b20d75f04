#!/usr/bin/env bash
# Renders the popup (a mixed list, the editor, a calendar event, the empty list, the welcome page)
# and the settings window in the five languages, light and dark, on a private Xvfb display, and
# the panel with the popup open (en-panel.png, from the end-to-end test's desktop):
#   docs/screenshots.sh [BUILD_DIR] [OUT_DIR]
# BUILD_DIR defaults to build/dev (it needs the tarrow_popup_shots target), OUT_DIR to
# docs/screenshots. The pictures the README shows are among them; run this after changing the look
# and commit the ones that changed.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/dev}
out=${2:-docs/screenshots}
shots="$build/tests/ui/tarrow_popup_shots"

cmake --build "$build" --target tarrow_popup_shots tarrow tarrow_screen_grab >/dev/null
command -v Xvfb >/dev/null || { echo "screenshots.sh: Xvfb is missing (apt install xvfb)" >&2; exit 1; }
mkdir -p "$out"

work=$(mktemp -d "${TMPDIR:-/tmp}/tarrow-shots.XXXXXX")
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null; wait "$xvfb" 2>/dev/null; rm -rf "$work"' EXIT
for _ in $(seq 50); do [[ -s "$work/display" ]] && break; sleep 0.1; done
[[ -s "$work/display" ]] || { echo "screenshots.sh: Xvfb did not start" >&2; exit 1; }

# A fixed zone and a neutral locale, so only the interface language changes between pictures;
# a private configuration, so nothing of the user's is read or written.
export DISPLAY=":$(head -n1 "$work/display")" QT_QPA_PLATFORM=xcb TZ=Europe/Istanbul
export LANG=C.UTF-8 LC_ALL=C.UTF-8 LANGUAGE= XDG_CONFIG_HOME="$work/config"
export XDG_RUNTIME_DIR="$work/run" && mkdir -m 700 -p "$XDG_RUNTIME_DIR"
for language in en tr de es fr; do
    for theme in light dark; do
        "$shots" "$out" "$language" "$theme" 2>/dev/null | sed 's/^/  /'
    done
done

# The panel and the popup as a person sees them: the end-to-end test's desktop (xfce4-panel on
# Xvfb) after it has added and pinned a countdown.
if env -u DISPLAY tests/app/e2e/run-e2e.sh panel "$build/src/app/tarrow" \
    "$build/tests/app/tarrow_screen_grab" "$PWD" "$work/e2e" >"$work/e2e.log" 2>&1; then
    cp "$work/e2e/e2e-pinned.png" "$out/en-panel.png"
    echo "  $out/en-panel.png"
else
    echo "screenshots.sh: no picture of the panel: $(tail -n 3 "$work/e2e.log")" >&2
fi
