#!/usr/bin/env bash
# Takes the screenshots of the README from an existing build (nothing is built here):
#   docs/mainwindow.png      the main window with an exercise of random groups, playing
#   docs/settings.png        the settings panel
#   docs/mainwindow-200.png  the same at 200 % scaling on a 1280x1024 screen, where the
#   docs/settings-200.png    window must fit the screen (its columns scroll)
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

shoot() { # SCALE SCREEN OUTPUT, then the program's extra options
  local scale=$1 screen=$2 out=$3; shift 3
  rm -f "$work/settings.ini"
  QT_SCALE_FACTOR=$scale xvfb-run -a -s "-screen 0 ${screen}x24" \
    "$program" --root "$tree" --settings "$work/settings.ini" --seed 1 --screenshot "$out" "$@"
}

groups="KQZVB 38271 RXMTE WAJLY 54019 HPDNG CUOFS 72648 ZELQR BMYTK 90315 VGXHW"
shoot 1 1280x900 "$here/docs/mainwindow.png" --screenshot-exercise "$groups" --screenshot-play
shoot 1 1280x900 "$here/docs/settings.png" --screenshot-settings
shoot 2 1280x1024 "$here/docs/mainwindow-200.png" --screenshot-exercise "$groups" --screenshot-play
shoot 2 1280x1024 "$here/docs/settings-200.png" --screenshot-settings
echo "screenshots: docs/mainwindow.png docs/settings.png docs/mainwindow-200.png docs/settings-200.png"
