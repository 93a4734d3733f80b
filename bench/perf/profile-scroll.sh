#!/usr/bin/env bash
# Where Pelorin's CPU goes while it plays with one label scrolling every 150 ms: the same skin as
# run-all.sh's "PerfScroll", on a private Xvfb screen with openbox and the silent demo player,
# under valgrind's callgrind. Counting starts once the window is up and stops after SECONDS, so
# start-up is left out. Prints the functions with the most instructions, inclusive and their own.
#
#   bench/perf/profile-scroll.sh [BUILD_DIR] [SECONDS]     (defaults: build-perf, 30)
#
# BUILD_DIR: a Release build (RelWithDebInfo gives function names with lines). Needs valgrind,
# Xvfb, openbox, mpd and mpc. Instruction counts, not seconds: repeatable on any machine.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
BUILD=$(cd "${1:-$root/build-perf}" && pwd)
SECONDS_RUN=${2:-30}

for tool in valgrind callgrind_control callgrind_annotate Xvfb openbox mpd mpc; do
    command -v "$tool" >/dev/null || { echo "profile-scroll: $tool is missing" >&2; exit 1; }
done

WORK=$(mktemp -d)
xvfb_pid=""
pelorin_pid=""
cleanup() {
    [[ -n $pelorin_pid ]] && kill "$pelorin_pid" 2>/dev/null || true
    XDG_STATE_HOME=$WORK/home/.local/state "$root/scripts/demo.sh" --stop >/dev/null 2>&1 || true
    [[ -n $xvfb_pid ]] && kill "$xvfb_pid" 2>/dev/null || true
    rm -rf "$WORK"
}
trap cleanup EXIT

export PELORIN_HOME=$WORK/program
mkdir -p "$PELORIN_HOME" "$WORK/home" "$WORK/runtime"
chmod 700 "$WORK/runtime"
cp -r "$root/data/Skins" "$PELORIN_HOME/"
export HOME=$WORK/home XDG_CONFIG_HOME=$WORK/home/.config XDG_DATA_HOME=$WORK/home/.local/share
export XDG_STATE_HOME=$WORK/home/.local/state XDG_CACHE_HOME=$WORK/home/.cache
export XDG_RUNTIME_DIR=$WORK/runtime PELORIN_UNATTENDED=1 QT_QPA_PLATFORM=xcb

# The scrolling copy of Default, as run-all.sh makes it.
skins=$PELORIN_HOME/Skins
cp -r "$skins/Default" "$skins/PerfScroll"
sed -e 's/^scrolltimer=[0-9]*/scrolltimer=150/' \
    -e 's/^label=100;9;190;18;\[Title\]/label=100;9;190;18;[Title] - [Artist] - [Album] ([Year], track [TrackNumber])/' \
    -e 's/^skinname=[A-Za-z]*/skinname=PerfScroll/' \
    "$skins/Default/skin.ini" >"$skins/PerfScroll/skin.ini"
printf 'disablelabelscroll=2\r\ndisablelabelscroll=3\r\n' >>"$skins/PerfScroll/skin.ini"

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$WORK/display" 2>"$WORK/xvfb.log" &
xvfb_pid=$!
for _ in $(seq 100); do
    [[ -s $WORK/display ]] && break
    sleep 0.05
done
export DISPLAY=:$(head -n 1 "$WORK/display")
openbox >/dev/null 2>&1 &

demo=$(PELORIN_DEMO_OUTPUT=null "$root/scripts/demo.sh" "$BUILD" 2>&1)
MPD_HOST=$(echo "$demo" | sed -n 's/^MPD_HOST=//p' | tail -n 1)
export MPD_HOST
mpc -q play

valgrind --tool=callgrind --instr-atstart=no --callgrind-out-file="$WORK/callgrind.out" \
    "$BUILD/pelorin" "$skins/PerfScroll/|300|300" >"$WORK/pelorin.log" 2>&1 &
pelorin_pid=$!
# Valgrind makes start-up slow: wait well past the first paint before counting.
sleep 15
callgrind_control -i on "$pelorin_pid" >/dev/null
sleep "$SECONDS_RUN"
callgrind_control -d "$pelorin_pid" >/dev/null
callgrind_control -i off "$pelorin_pid" >/dev/null
sleep 2
kill "$pelorin_pid" 2>/dev/null || true
wait "$pelorin_pid" 2>/dev/null || true
pelorin_pid=""

# The dump made while counting (callgrind.out.1); the one written at exit counts nothing more.
out=$(ls -S "$WORK"/callgrind.out* | head -n 1)
# PELORIN_PROFILE_OUT keeps the profile for callgrind_annotate or kcachegrind.
[[ -n ${PELORIN_PROFILE_OUT:-} ]] && cp "$out" "$PELORIN_PROFILE_OUT"
echo "== $SECONDS_RUN s of playing with the title scrolling every 150 ms (instructions)"
echo "-- inclusive"
callgrind_annotate --inclusive=yes "$out" 2>/dev/null | sed -n '/^Ir/,$p' | head -n 45
echo "-- own"
callgrind_annotate "$out" 2>/dev/null | sed -n '/^Ir/,$p' | head -n 30
