#!/usr/bin/env bash
# Renders every bundled skin to a PNG: docs/images/Default.png, docs/images/Mini.png and
# docs/images/Deskband.png. Builds nothing: it runs the pelorin of an existing build.
#
#   scripts/render-skins.sh [BUILD_DIR]      (default: build)
#
# Each skin opens on a private Xvfb screen managed by openbox, from a temporary copy of the
# program folder and a temporary user (so no position.ini or setting of yours is touched, and none
# is left behind). When the build has tools/make-demo-library and mpd and mpc are installed, the
# skins show a track of the demo library playing silently on a private player (scripts/demo.sh);
# otherwise they open without a player. PELORIN_RENDER_PLAYER=none skips the player.
# The screen's background is a key colour that becomes transparent in the PNG, so rounded corners
# come out clear.
# Needs: xvfb, openbox, xdotool, x11-xserver-utils (xsetroot), imagemagick; mpd and mpc optional.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(dirname "$here")
key_colour='#ff00ff'

render_one() { # NAME SKIN_FOLDER OUTPUT
    local name=$1 folder=$2 output=$3 title id='' pid
    title=$(basename "$folder")
    "$PELORIN" "$folder/|1500|1500" >"$WORK/$name.log" 2>&1 &
    pid=$!
    for _ in $(seq 100); do
        id=$(xdotool search --onlyvisible --name "^${title}\$" 2>/dev/null | head -n 1 || true)
        [[ -n $id ]] && break
        if ! kill -0 "$pid" 2>/dev/null; then
            echo "render-skins: pelorin ended before showing $name:" >&2
            cat "$WORK/$name.log" >&2
            return 1
        fi
        sleep 0.1
    done
    if [[ -z $id ]]; then
        echo "render-skins: no window titled \"$title\" appeared for $name" >&2
        kill "$pid" 2>/dev/null || true
        return 1
    fi
    # Let the first paints, the label fonts and a fade-in settle.
    sleep 1.5
    import -window "$id" "png:$WORK/$name-raw.png"
    convert "$WORK/$name-raw.png" -transparent "$key_colour" -strip "png32:$output"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    echo "render-skins: $output"
}

inside() {
    xsetroot -solid "$key_colour"
    mkdir -p "$root/docs/images"
    render_one Default "$PELORIN_HOME/Skins/Default" "$root/docs/images/Default.png"
    render_one Mini "$PELORIN_HOME/Skins/Mini" "$root/docs/images/Mini.png"
    render_one Deskband "$PELORIN_HOME/Deskband/Default" "$root/docs/images/Deskband.png"
}

if [[ ${1:-} == --inside ]]; then
    inside
    exit
fi

build=${1:-$root/build}
PELORIN=$(cd "$build" && pwd)/pelorin
if [[ ! -x $PELORIN ]]; then
    echo "render-skins: no program at $PELORIN (build it first)" >&2
    exit 1
fi
for tool in Xvfb openbox xdotool xsetroot import convert; do
    if ! command -v "$tool" >/dev/null; then
        echo "render-skins: $tool is missing (packages: xvfb openbox xdotool x11-xserver-utils imagemagick)" >&2
        exit 1
    fi
done

WORK=$(mktemp -d)
xvfb_pid=''
demo_started=''
cleanup() {
    [[ -n $demo_started ]] && "$here/demo.sh" --stop >/dev/null 2>&1 || true
    [[ -n $xvfb_pid ]] && kill "$xvfb_pid" 2>/dev/null || true
    rm -rf "$WORK"
}
trap cleanup EXIT

# A throwaway program folder and user: the skins as checked in, no settings, no player.
export PELORIN_HOME=$WORK/program
mkdir -p "$PELORIN_HOME" "$WORK/home" "$WORK/runtime"
chmod 700 "$WORK/runtime"
cp -r "$root/data/Skins" "$root/data/Deskband" "$PELORIN_HOME/"
export HOME=$WORK/home XDG_CONFIG_HOME=$WORK/home/.config XDG_DATA_HOME=$WORK/home/.local/share
export XDG_STATE_HOME=$WORK/home/.local/state XDG_CACHE_HOME=$WORK/home/.cache
export XDG_RUNTIME_DIR=$WORK/runtime
export PELORIN_UNATTENDED=1 QT_QPA_PLATFORM=xcb
# A player address where none listens: Pelorin then starts no player of its own.
export MPD_HOST=$WORK/no-player.socket
export PELORIN WORK

# The demo library on a private, silent player, a third of the way into its fourth track.
if [[ ${PELORIN_RENDER_PLAYER:-demo} != none && -x $build/tools/make-demo-library ]] &&
    command -v mpd >/dev/null && command -v mpc >/dev/null; then
    if PELORIN_DEMO_OUTPUT=null "$here/demo.sh" "$build" >"$WORK/demo.log" 2>&1; then
        demo_started=1
        MPD_HOST=$(sed -n 's/^MPD_HOST=//p' "$WORK/demo.log" | tail -n 1)
        mpc -q -h "$MPD_HOST" play 4 && mpc -q -h "$MPD_HOST" seek 33% || true
        echo "render-skins: the skins show the demo library"
    else
        echo "render-skins: the demo player did not start; rendering without a player:" >&2
        tail -n 5 "$WORK/demo.log" >&2
    fi
else
    echo "render-skins: rendering without a player"
fi

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$WORK/display" 2>"$WORK/xvfb.log" &
xvfb_pid=$!
for _ in $(seq 100); do
    [[ -s $WORK/display ]] && break
    sleep 0.05
done
if [[ ! -s $WORK/display ]]; then
    echo "render-skins: Xvfb did not start" >&2
    cat "$WORK/xvfb.log" >&2
    exit 1
fi
export DISPLAY=:$(head -n 1 "$WORK/display")

runner=()
command -v dbus-run-session >/dev/null && runner=(dbus-run-session --)
"${runner[@]}" "$here/with-window-manager.sh" "$0" --inside
