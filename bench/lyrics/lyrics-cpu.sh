#!/usr/bin/env bash
# CPU of a skin window showing synchronized lyrics while the player plays, against the same window
# without lyrics: the bundled Lyrics skin, then a copy of it without its "lyrics" line, each for
# SECONDS on a private Xvfb screen with openbox and the silent demo player (whose tracks all have
# sync files). Prints each one's CPU in percent of one core and the difference. Not a test: the
# numbers belong to the machine they were taken on.
#
#   bench/lyrics/lyrics-cpu.sh [BUILD_DIR] [SECONDS]     (defaults: build, 60)
#
# BUILD_DIR holds pelorin, its data and tools/make-demo-library (a Release build for real
# numbers). Needs Xvfb, openbox, xdotool, mpd and mpc.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)

# utime + stime of a process, in clock ticks.
cpu_ticks() { sed 's/.*) //' /proc/"$1"/stat | awk '{ print $12 + $13 }'; }

measure() {
    local skin=$1 pid id start end
    "$BUILD/pelorin" "$PELORIN_HOME/Skins/$skin/|4500|4500" >>"$WORK/pelorin.log" 2>&1 &
    pid=$!
    for _ in $(seq 200); do
        id=$(xdotool search --onlyvisible --name "^$skin\$" 2>/dev/null | head -n 1) || true
        [[ -n $id ]] && break
        sleep 0.05
    done
    [[ -n $id ]] || { echo "lyrics-cpu: no $skin window" >&2; exit 1; }
    # The lyrics start with the window's first activation, a click.
    xdotool mousemove --window "$id" 160 114 click 1
    sleep 3
    start=$(cpu_ticks "$pid")
    sleep "$SECONDS_RUN"
    end=$(cpu_ticks "$pid")
    kill "$pid"
    wait "$pid" 2>/dev/null || true
    python3 -c "print(f'{($end - $start) / $(getconf CLK_TCK) / $SECONDS_RUN * 100:.3f}')"
}

if [[ ${1:-} == --inside ]]; then
    demo=$(PELORIN_DEMO_OUTPUT=null "$root/scripts/demo.sh" "$BUILD" 2>&1) ||
        { echo "$demo" >&2; exit 1; }
    MPD_HOST=$(echo "$demo" | sed -n 's/^MPD_HOST=//p' | tail -n 1)
    export MPD_HOST
    mpc -q repeat on
    mpc -q play
    skins=$PELORIN_HOME/Skins
    cp -r "$skins/Lyrics" "$skins/NoLyrics"
    grep -v '^lyrics=' "$skins/Lyrics/skin.ini" |
        sed 's/^skinname=[A-Za-z]*/skinname=NoLyrics/' >"$skins/NoLyrics/skin.ini"
    with=$(measure Lyrics)
    without=$(measure NoLyrics)
    echo "CPU over $SECONDS_RUN s, playing: Lyrics skin $with %, without lyrics $without % of a core"
    python3 -c "print(f'difference: {$with - $without:+.3f} % of a core (goal: under +0.1)')"
    exit
fi

BUILD=$(cd "${1:-$root/build}" && pwd)
SECONDS_RUN=${2:-60}
for program in pelorin tools/make-demo-library; do
    [[ -x $BUILD/$program ]] || { echo "lyrics-cpu: $BUILD/$program is missing" >&2; exit 1; }
done
# shellcheck source=../lib/private-desktop.sh
. "$here/../lib/private-desktop.sh"
private_desktop_start lyrics-cpu
export BUILD SECONDS_RUN
"$root/scripts/with-window-manager.sh" "$0" --inside
