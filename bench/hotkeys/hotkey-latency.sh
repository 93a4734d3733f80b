#!/usr/bin/env bash
# Key press to the player: how long a keyboard shortcut of a skin takes from the key press until
# the player daemon reports the change, against mpc sending the same command from a shell (as a
# desktop's own key binding would run it). Both sides start one process per press (xdotool, mpc)
# and are timed alike, from just before that process starts until the daemon's "idle" wakes up,
# so the ratio is the price of the whole route through the X server and Pelorin.
# Runs on a private Xvfb screen with openbox and the demo player playing silently; prints the
# medians and their ratio. Not a test: the numbers belong to the machine they were taken on.
#
#   bench/hotkeys/hotkey-latency.sh [BUILD_DIR] [PRESSES]     (defaults: build, 40)
#
# BUILD_DIR holds pelorin and tools/make-demo-library (any build; Release for real numbers).
# Needs Xvfb, openbox, xdotool, mpd, mpc and python3.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)

if [[ ${1:-} == --inside ]]; then
    demo=$(PELORIN_DEMO_OUTPUT=null "$root/scripts/demo.sh" "$BUILD" 2>&1) ||
        { echo "$demo" >&2; exit 1; }
    MPD_HOST=$(echo "$demo" | sed -n 's/^MPD_HOST=//p' | tail -n 1)
    export MPD_HOST
    mpc -q play

    # A copy of Default whose only shortcut is Ctrl+Alt+K: play or pause (Ctrl+Alt+F keys switch
    # virtual terminals in X servers and never reach a client).
    skins=$PELORIN_HOME/Skins
    cp -r "$skins/Default" "$skins/KeyBench"
    grep -v '^keyboardshortcut=' "$skins/Default/skin.ini" |
        sed 's/^skinname=[A-Za-z]*/skinname=KeyBench/' >"$skins/KeyBench/skin.ini"
    printf 'keyboardshortcut=CONTROL+ALT+K;playpause\r\n' >>"$skins/KeyBench/skin.ini"
    "$BUILD/pelorin" "$skins/KeyBench/|300|300" >>"$WORK/pelorin.log" 2>&1 &
    pelorin=$!
    for _ in $(seq 200); do
        xdotool search --onlyvisible --name '^KeyBench$' >/dev/null 2>&1 && break
        sleep 0.05
    done
    sleep 1

    python3 - "$PRESSES" <<'PY' || true
import os, socket, statistics, subprocess, sys, time

presses = int(sys.argv[1])
host = os.environ["MPD_HOST"]

def connect():
    if host.startswith("/") or host.startswith("@"):
        s = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        s.connect(("\0" + host[1:]) if host.startswith("@") else host)
    else:
        s = socket.create_connection((host, int(os.environ.get("MPD_PORT", "6600"))))
    s.settimeout(10)
    f = s.makefile("rwb", buffering=0)
    f.readline()  # OK MPD version
    return s, f

def timed(command):
    """Seconds from just before the command starts until the daemon reports the player changed."""
    s, f = connect()
    f.write(b"idle player\n")
    time.sleep(0.02)  # the daemon has taken the idle before the command starts
    start = time.perf_counter()
    # Not waited for first: xdotool goes on releasing keys after the press has done its work.
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    while True:
        line = f.readline()
        if not line:
            raise SystemExit("the daemon closed the connection")
        if line.startswith(b"OK") or line.startswith(b"ACK"):
            break
    elapsed = time.perf_counter() - start
    process.wait()
    s.close()
    time.sleep(0.05)
    return elapsed

key = ["xdotool", "key", "--delay", "0", "ctrl+alt+k"]
shell = ["mpc", "-q", "toggle"]
for _ in range(3):  # warm-up
    timed(key); timed(shell)
keys = [timed(key) for _ in range(presses)]
shells = [timed(shell) for _ in range(presses)]
km, sm = statistics.median(keys), statistics.median(shells)
print(f"presses: {presses} each")
print(f"shortcut (xdotool key -> Pelorin -> daemon): median {km * 1000:.2f} ms, "
      f"p90 {sorted(keys)[int(presses * 0.9) - 1] * 1000:.2f} ms")
print(f"mpc toggle (shell -> daemon):                median {sm * 1000:.2f} ms, "
      f"p90 {sorted(shells)[int(presses * 0.9) - 1] * 1000:.2f} ms")
print(f"ratio shortcut / mpc: {km / sm:.2f}")
PY
    kill "$pelorin" 2>/dev/null || true
    [[ -s $WORK/pelorin.log ]] && sed "s/^/pelorin: /" "$WORK/pelorin.log" >&2
    XDG_STATE_HOME=$WORK/home/.local/state "$root/scripts/demo.sh" --stop >/dev/null 2>&1 || true
    exit
fi

BUILD=$(cd "${1:-$root/build}" && pwd)
PRESSES=${2:-40}
for program in pelorin tools/make-demo-library; do
    [[ -x $BUILD/$program ]] || { echo "hotkey-latency: $BUILD/$program is missing" >&2; exit 1; }
done
for tool in Xvfb openbox xdotool mpd mpc python3; do
    command -v "$tool" >/dev/null || { echo "hotkey-latency: $tool is missing" >&2; exit 1; }
done

# shellcheck source=../lib/private-desktop.sh
. "$here/../lib/private-desktop.sh"
private_desktop_start hotkey-latency
export BUILD PRESSES
"$root/scripts/with-window-manager.sh" "$0" --inside
