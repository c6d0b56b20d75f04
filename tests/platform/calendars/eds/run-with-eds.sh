#!/usr/bin/env bash
# `run-with-eds.sh TEST [ARGS...]`: runs TEST against a private Evolution Data Server on a private
# session bus, in a throw-away home with one calendar set up before the registry starts: "Work"
# (local, seeded from tests/fixtures/calendars/weekly-berlin.ics). EDS's services are started by
# D-Bus activation with this environment. Exits 77 (skipped) when EDS is not installed, except on
# CI.
set -euo pipefail
test_binary=$1
shift
if ! command -v dbus-run-session >/dev/null ||
    [[ ! -x /usr/libexec/evolution-source-registry ]]; then
    echo "run-with-eds.sh: evolution-data-server or dbus-run-session is missing" >&2
    [[ -n "${CI:-}" ]] && exit 1
    exit 77
fi
world=$(mktemp -d "${TMPDIR:-/tmp}/tarrow-eds.XXXXXX")
trap 'rm -rf "$world"' EXIT
export HOME="$world/home" XDG_CONFIG_HOME="$world/home/.config" XDG_DATA_HOME="$world/home/.local/share"
export XDG_CACHE_HOME="$world/home/.cache" XDG_RUNTIME_DIR="$world/run" GSETTINGS_BACKEND=memory
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
sources="$XDG_CONFIG_HOME/evolution/sources"
mkdir -p "$sources" "$XDG_DATA_HOME/evolution/calendar/work-local"
cat >"$sources/work-local.source" <<'SOURCE'
[Data Source]
DisplayName=Work
Enabled=true
Parent=local-stub

[Calendar]
BackendName=local
Color=#f66151
Selected=true
SOURCE
cp "$TARROW_FIXTURES/calendars/weekly-berlin.ics" \
    "$XDG_DATA_HOME/evolution/calendar/work-local/calendar.ics"
exec dbus-run-session -- "$test_binary" "$@"
