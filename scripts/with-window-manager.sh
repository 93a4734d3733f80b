#!/usr/bin/env bash
# Runs a command on the current X display with openbox managing its windows, as a desktop would.
set -euo pipefail
openbox --sm-disable >/dev/null 2>&1 &
wm=$!
trap 'kill $wm 2>/dev/null || true' EXIT
for _ in $(seq 50); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" && break
    sleep 0.1
done
"$@"
