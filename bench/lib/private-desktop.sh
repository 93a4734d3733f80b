# Sourced by the whole-process benchmarks: a private program folder, home and runtime folder in
# a temporary WORK folder, and a private Xvfb screen whose DISPLAY the caller runs on (with openbox
# through scripts/with-window-manager.sh). The demo player, when the caller started one, is
# stopped on exit with everything else.
#
#   private_desktop_start NAME      NAME prefixes the messages; sets WORK and exports the rest

private_desktop_start() {
    local name=$1 root
    root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
    WORK=$(mktemp -d)
    PRIVATE_DESKTOP_XVFB=''
    PRIVATE_DESKTOP_ROOT=$root
    trap private_desktop_stop EXIT
    export PELORIN_HOME=$WORK/program
    mkdir -p "$PELORIN_HOME" "$WORK/home" "$WORK/runtime"
    chmod 700 "$WORK/runtime"
    cp -r "$root/data/Skins" "$root/data/Deskband" "$root/data/Lyrics" "$PELORIN_HOME/"
    export HOME=$WORK/home XDG_CONFIG_HOME=$WORK/home/.config
    export XDG_DATA_HOME=$WORK/home/.local/share XDG_STATE_HOME=$WORK/home/.local/state
    export XDG_CACHE_HOME=$WORK/home/.cache XDG_RUNTIME_DIR=$WORK/runtime
    export PELORIN_UNATTENDED=1 QT_QPA_PLATFORM=xcb WORK
    Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$WORK/display" 2>"$WORK/xvfb.log" &
    PRIVATE_DESKTOP_XVFB=$!
    for _ in $(seq 100); do
        [[ -s $WORK/display ]] && break
        sleep 0.05
    done
    [[ -s $WORK/display ]] || { echo "$name: Xvfb did not start" >&2; exit 1; }
    export DISPLAY=:$(head -n 1 "$WORK/display")
}

private_desktop_stop() {
    XDG_STATE_HOME=$WORK/home/.local/state "$PRIVATE_DESKTOP_ROOT/scripts/demo.sh" --stop \
        >/dev/null 2>&1 || true
    [[ -n $PRIVATE_DESKTOP_XVFB ]] && kill "$PRIVATE_DESKTOP_XVFB" 2>/dev/null || true
    rm -rf "$WORK"
}
