#!/usr/bin/env bash
# Takes the two screenshots of the README from an existing build (nothing is built here):
#   docs/mainwindow.png  the main window with an exercise of random groups
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
trap 'rm -rf "$work"' EXIT
export XDG_RUNTIME_DIR=$work

shoot() { # OUTPUT, then the program's extra options
  local out=$1; shift
  rm -f "$work/settings.ini"
  xvfb-run -a -s "-screen 0 1280x900x24" \
    "$program" --root "$tree" --settings "$work/settings.ini" --seed 1 --screenshot "$out" "$@"
}

groups="KQZVB 38271 RXMTE WAJLY 54019 HPDNG CUOFS 72648 ZELQR BMYTK 90315 VGXHW"
shoot "$here/docs/mainwindow.png" --screenshot-exercise "$groups"
shoot "$here/docs/settings.png" --screenshot-settings
echo "screenshots: docs/mainwindow.png docs/settings.png"
