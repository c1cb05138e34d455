#!/usr/bin/env bash
# Installs, from Debian's packages, whatever Kelvora needs to build, test and run.
# Idempotent: packages already present are not reinstalled and apt is not touched at all.
set -euo pipefail

packages=(
  build-essential cmake pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-multimedia-dev qt6-serialport-dev qt6-qpa-plugins
  qt6-translations-l10n
  libgl-dev libsqlite3-dev libbenchmark-dev
  wfrench  # the word list the exercise benchmark draws from
  # tests: private audio server, pseudo-terminals, virtual display and screenshots
  pulseaudio pulseaudio-utils socat xvfb xauth imagemagick fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
