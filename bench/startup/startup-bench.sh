#!/usr/bin/env bash
# Start-up benchmark: the time from exec to the first painted window, for pelorin on the Default
# skin and for bench/bare_window (a frameless Qt window of the same size that paints once).
# Prints both medians and their ratio; the goal is pelorin <= 1.3 x the bare window.
#
#   bench/startup/startup-bench.sh [BUILD_DIR] [RUNS]     (defaults: build-bench, 20)
#
# BUILD_DIR must hold pelorin and the benchmark programs (configure with -DPELORIN_BENCH=ON;
# measure a Release build). Runs on a private Xvfb screen with openbox, with a temporary program
# folder and user, PELORIN_UNATTENDED=1 and no player. Not a test: the numbers depend on the
# machine.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
key_colour='#ff00ff'
# Both windows open at (200, 150); the probe watches a pixel of the Default skin's background
# that no element covers (95, 5 inside the window).
left=200
top=150
probe_x=$((left + 95))
probe_y=$((top + 5))

median() { sort -n | awk '{ v[NR] = $1 } END { if (NR % 2) print v[(NR + 1) / 2]; else printf "%.1f\n", (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

fail() {
    echo "startup-bench: a run of $1 failed; its output:" >&2
    tail -n 20 "$WORK/$1.log" >&2
    exit 1
}

inside() {
    xsetroot -solid "$key_colour"
    local probe=$BUILD/bench/startup/first-paint-probe bare=$BUILD/bench/bare_window/bare-window
    local twips_left=$((left * 15)) twips_top=$((top * 15)) i
    : >"$WORK/pelorin.times"
    : >"$WORK/bare.times"
    # Two warm-up runs of each fill the file cache; then the two programs take turns, so that
    # whatever else the machine does falls on both alike.
    for i in $(seq $((RUNS + 2))); do
        local p b
        p=$("$probe" "$probe_x" "$probe_y" 10000 -- "$BUILD/pelorin" \
            "$PELORIN_HOME/Skins/Default/|$twips_left|$twips_top" 2>>"$WORK/pelorin.log") ||
            fail pelorin
        b=$("$probe" "$probe_x" "$probe_y" 10000 -- "$bare" "$left" "$top" 2>>"$WORK/bare.log") ||
            fail bare
        if ((i > 2)); then
            echo "${p%% *}" >>"$WORK/pelorin.times"
            echo "${b%% *}" >>"$WORK/bare.times"
            echo "${p#* } ${b#* }" >>"$WORK/colours"
        fi
        # The screen under the window must show the background again before the next run.
        sleep 0.2
    done
    local pm bm
    pm=$(median <"$WORK/pelorin.times")
    bm=$(median <"$WORK/bare.times")
    echo "runs:                          $RUNS each"
    echo "first painted colour (pelorin, bare): $(sort "$WORK/colours" | uniq -c | sort -rn | head -n 3 | tr -s ' ' | paste -sd ',')"
    echo "pelorin (Default skin) median: $pm ms   (min $(sort -n "$WORK/pelorin.times" | head -n 1), max $(sort -n "$WORK/pelorin.times" | tail -n 1))"
    echo "bare Qt window median:         $bm ms   (min $(sort -n "$WORK/bare.times" | head -n 1), max $(sort -n "$WORK/bare.times" | tail -n 1))"
    awk -v p="$pm" -v b="$bm" 'BEGIN { r = p / b; printf "ratio:                         %.2f x (goal <= 1.30 x): %s\n", r, (r <= 1.3 ? "met" : "NOT met") }'
}

if [[ ${1:-} == --inside ]]; then
    inside
    exit
fi

BUILD=$(cd "${1:-$root/build-bench}" && pwd)
RUNS=${2:-20}
for program in "$BUILD/pelorin" "$BUILD/bench/bare_window/bare-window" \
    "$BUILD/bench/startup/first-paint-probe"; do
    if [[ ! -x $program ]]; then
        echo "startup-bench: $program is missing (build with -DPELORIN_BENCH=ON)" >&2
        exit 1
    fi
done
for tool in Xvfb openbox xsetroot; do
    command -v "$tool" >/dev/null || { echo "startup-bench: $tool is missing" >&2; exit 1; }
done

WORK=$(mktemp -d)
xvfb_pid=''
cleanup() {
    [[ -n $xvfb_pid ]] && kill "$xvfb_pid" 2>/dev/null || true
    rm -rf "$WORK"
}
trap cleanup EXIT

export PELORIN_HOME=$WORK/program
mkdir -p "$PELORIN_HOME" "$WORK/home" "$WORK/runtime"
chmod 700 "$WORK/runtime"
cp -r "$root/data/Skins" "$root/data/Deskband" "$PELORIN_HOME/"
export HOME=$WORK/home XDG_CONFIG_HOME=$WORK/home/.config XDG_DATA_HOME=$WORK/home/.local/share
export XDG_STATE_HOME=$WORK/home/.local/state XDG_CACHE_HOME=$WORK/home/.cache
export XDG_RUNTIME_DIR=$WORK/runtime
export PELORIN_UNATTENDED=1 QT_QPA_PLATFORM=xcb
# A player address where none listens: no player is started or needed.
export MPD_HOST=$WORK/no-player.socket
export BUILD RUNS WORK

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$WORK/display" 2>"$WORK/xvfb.log" &
xvfb_pid=$!
for _ in $(seq 100); do
    [[ -s $WORK/display ]] && break
    sleep 0.05
done
if [[ ! -s $WORK/display ]]; then
    echo "startup-bench: Xvfb did not start" >&2
    exit 1
fi
export DISPLAY=:$(head -n 1 "$WORK/display")

runner=()
command -v dbus-run-session >/dev/null && runner=(dbus-run-session --)
"${runner[@]}" "$root/scripts/with-window-manager.sh" "$0" --inside
