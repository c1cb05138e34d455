#!/usr/bin/env bash
# Takes the two screenshots of the README from an existing build (nothing is built here):
#   docs/mainwindow.png  the main window with an exercise of random groups, playing
#   docs/settings.png    the settings panel
# The program runs under a virtual X display (xvfb-run), on a fresh settings file, and
# saves its own window once it is shown (--screenshot).
# Usage: scripts/screenshots.sh [BUILD_DIR]   (default: build)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$here/build}
tree=$build/kelvora
program=$tree/kelvora
[ -x "$program" ] || { echo "screenshots: $program not found; build the installation tree first" >&2; exit 2; }
command -v xvfb-run >/dev/null || { echo "screenshots: xvfb-run is needed (apt install xvfb)" >&2; exit 2; }

work=$(mktemp -d /tmp/kelvora-screenshots.XXXXXX)
export XDG_RUNTIME_DIR=$work
export PULSE_RUNTIME_PATH=$work/pulse
# A private audio server (a null sink), so that the window plays as on a desktop with
# sound; without one it plays in silence and its status bar says so.
started_pulse=0
if command -v pulseaudio >/dev/null 2>&1 &&
   pulseaudio -D --exit-idle-time=-1 -n --disallow-exit \
     --load=module-null-sink --load=module-native-protocol-unix >"$work/pulse.log" 2>&1; then
  started_pulse=1
fi
cleanup() {
  if [ "$started_pulse" = 1 ]; then pulseaudio --kill >/dev/null 2>&1 || true; fi
  rm -rf "$work"
}
trap cleanup EXIT

shoot() { # OUTPUT, then the program's extra options
  local out=$1; shift
  rm -f "$work/settings.ini"
  xvfb-run -a -s "-screen 0 1280x900x24" \
    "$program" --root "$tree" --settings "$work/settings.ini" --seed 1 --screenshot "$out" "$@"
}

groups="KQZVB 38271 RXMTE WAJLY 54019 HPDNG CUOFS 72648 ZELQR BMYTK 90315 VGXHW"
shoot "$here/docs/mainwindow.png" --screenshot-exercise "$groups" --screenshot-play
shoot "$here/docs/settings.png" --screenshot-settings
echo "screenshots: docs/mainwindow.png docs/settings.png"
