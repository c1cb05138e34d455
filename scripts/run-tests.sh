#!/usr/bin/env bash
# Runs the whole test suite of one build folder, with a private audio server (a
# PulseAudio null sink) so that sound tests play for real without a sound card.
set -uo pipefail
build_dir=${1:-build}

runtime=$(mktemp -d /tmp/kelvora-test-runtime.XXXXXX)
export XDG_RUNTIME_DIR=$runtime
export PULSE_RUNTIME_PATH=$runtime/pulse
started_pulse=0
if command -v pulseaudio >/dev/null 2>&1; then
  if pulseaudio -D --exit-idle-time=-1 -n --disallow-exit \
       --load=module-null-sink --load=module-native-protocol-unix \
       >"$runtime/pulse.log" 2>&1; then
    started_pulse=1
  else
    echo "run-tests: no private audio server (see $runtime/pulse.log); sound tests use the silent clock"
  fi
fi

# A reader on the null sink's monitor keeps the sink running: without one, the sink's
# clock stands still for about two seconds whenever a stream starts.
monitor_reader=""
if [ "$started_pulse" = 1 ] && command -v parec >/dev/null 2>&1; then
  parec --device=null.monitor --latency-msec=20 >/dev/null 2>&1 &
  monitor_reader=$!
fi

cleanup() {
  if [ -n "$monitor_reader" ]; then kill "$monitor_reader" 2>/dev/null || true; fi
  if [ "$started_pulse" = 1 ]; then pulseaudio --kill >/dev/null 2>&1 || true; fi
  rm -rf "$runtime"
}
trap cleanup EXIT

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
shift || true
ctest --test-dir "$build_dir" --output-on-failure -j"$(nproc)" "$@"
