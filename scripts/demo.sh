#!/usr/bin/env bash
# Starts a demo player so a new user sees a live skin at once: generates the demo library (once)
# into $XDG_DATA_HOME/pelorin/demo-library, starts a dedicated player daemon for it (its own
# configuration and state under $XDG_STATE_HOME/pelorin/demo/, its socket in the runtime folder),
# queues the library, plays it and prints the MPD_HOST value that points Pelorin at it.
# Builds nothing: it needs an existing build folder (with tools/make-demo-library in it).
# Running it again reuses the demo player that is already running.
#
#   scripts/demo.sh [BUILD_DIR] [LIBRARY_FOLDER]     start (or reuse) the demo and play
#   scripts/demo.sh --stop                           stop the demo player
# PELORIN_DEMO_OUTPUT=null plays silently; =auto uses the player's own sound detection (the
# default when a sound server or card is there, falling back to silence when it cannot play).
set -euo pipefail

here="$(cd "$(dirname "$0")/.." && pwd)"
state="${XDG_STATE_HOME:-$HOME/.local/state}/pelorin/demo"
if [ -n "${XDG_RUNTIME_DIR:-}" ] && [ -d "$XDG_RUNTIME_DIR" ]; then
    runtime="$XDG_RUNTIME_DIR/pelorin"
else
    runtime="${TMPDIR:-/tmp}/pelorin-$(id -u)"
fi
socket="$runtime/demo.socket"
config="$state/demo.conf"
pidfile="$state/pid"

fail() {
    echo "demo: $*" >&2
    exit 1
}

demo_pid() {
    local pid
    pid=$(cat "$pidfile" 2>/dev/null || true)
    if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then
        echo "$pid"
    fi
}

if [ "${1:-}" = "--stop" ]; then
    pid=$(demo_pid)
    if [ -z "$pid" ]; then
        echo "The demo player is not running."
        exit 0
    fi
    kill -TERM "$pid"
    for _ in $(seq 50); do
        kill -0 "$pid" 2>/dev/null || { echo "The demo player has stopped."; exit 0; }
        sleep 0.1
    done
    fail "the demo player (process $pid) did not stop"
fi

build="${1:-$here/build}"
library="${2:-${XDG_DATA_HOME:-$HOME/.local/share}/pelorin/demo-library}"
generator="$build/tools/make-demo-library"

command -v mpd >/dev/null || fail "the player daemon is not installed (Debian package \"mpd\")"
command -v mpc >/dev/null || fail "mpc is not installed (Debian package \"mpc\")"

mpc_demo() {
    mpc -q -h "$socket" "$@"
}

# The sound output: the player's own detection when there is a sound server or card, else a
# null output that plays silently (so the skin still shows a playing track).
write_config() {
    local output="$1"
    mkdir -p "$state/playlists"
    {
        echo "# The Pelorin demo player. scripts/demo.sh writes this file; edit the real player's"
        echo "# configuration in \$XDG_CONFIG_HOME/pelorin/mpd.conf instead."
        echo "music_directory \"$library\""
        echo "playlist_directory \"$state/playlists\""
        echo "db_file \"$state/database\""
        echo "state_file \"$state/state\""
        echo "sticker_file \"$state/sticker.sql\""
        echo "pid_file \"$pidfile\""
        echo "log_file \"$state/log\""
        echo "bind_to_address \"$socket\""
        echo "metadata_to_use \"+comment\""
        echo "auto_update \"no\""
        echo "zeroconf_enabled \"no\""
        if [ "$output" = null ]; then
            printf 'audio_output {\n    type "null"\n    name "silent demo output"\n'
            printf '    mixer_type "software"\n}\n'
        fi
    } >"$config"
}

have_sound() {
    case "${PELORIN_DEMO_OUTPUT:-}" in
    auto) return 0 ;;
    null) return 1 ;;
    esac
    [ -S "${XDG_RUNTIME_DIR:-/nonexistent}/pulse/native" ] && return 0
    [ -S "${XDG_RUNTIME_DIR:-/nonexistent}/pipewire-0" ] && return 0
    compgen -G "/dev/snd/pcmC*D*p" >/dev/null && return 0
    return 1
}

start_player() {
    mkdir -p "$runtime" "$state"
    chmod 700 "$runtime"
    mpd "$config" 2>"$state/start.log" ||
        fail "the demo player did not start: $(cat "$state/start.log"; tail -n 5 "$state/log" 2>/dev/null)"
    for _ in $(seq 100); do
        mpc_demo status >/dev/null 2>&1 && return 0
        sleep 0.05
    done
    fail "the demo player did not answer on $socket"
}

stop_player() {
    local pid
    pid=$(demo_pid)
    [ -n "$pid" ] || return 0
    kill -TERM "$pid"
    for _ in $(seq 50); do
        kill -0 "$pid" 2>/dev/null || return 0
        sleep 0.1
    done
}

# 1. The library, generated once (the generator refuses to replace a folder it did not write).
if [ ! -f "$library/.pelorin-library" ] || [ -z "$(ls -A "$state/playlists" 2>/dev/null)" ]; then
    [ -x "$generator" ] || fail "$generator is missing: build Pelorin first (scripts/run.sh)"
    echo "Generating the demo library in $library ..."
    mkdir -p "$(dirname "$library")" "$state/playlists"
    "$generator" --demo "$library" --playlists "$state/playlists"
fi

# 2. The player: reuse the running one, else start it.
if mpc_demo status >/dev/null 2>&1; then
    echo "Reusing the running demo player."
else
    if [ ! -f "$config" ]; then
        if have_sound; then write_config auto; else write_config null; fi
    fi
    start_player
    mpc_demo update --wait
fi

# 3. Queue and play, unless it already plays.
if [ -z "$(mpc -h "$socket" playlist)" ]; then
    mpc_demo add /
    mpc_demo repeat on
fi
if ! mpc -h "$socket" status | grep -q '^\[playing\]'; then
    mpc_demo play || true
    sleep 0.5
    # A detected output that cannot open a device: fall back to the silent output.
    if mpc -h "$socket" status | grep -q '^ERROR:' && ! grep -q '"null"' "$config"; then
        echo "No usable sound output; the demo plays silently."
        stop_player
        write_config null
        start_player
        mpc_demo play
    fi
fi

mpc -h "$socket" status | head -n 2
echo
echo "The demo player is running. Point Pelorin at it with:"
echo "    export MPD_HOST=$socket"
echo "Stop it with: scripts/demo.sh --stop"
echo "MPD_HOST=$socket"
