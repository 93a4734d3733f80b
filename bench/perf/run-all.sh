#!/usr/bin/env bash
# The whole-process performance run, side by side in one go, on a private Xvfb screen with
# openbox and the demo player playing silently:
#   1. playing, SECONDS each at once: the Default skin with one label scrolling every 150 ms
#      (pelorin), the bare frameless Qt window of bench/bare_window (same size) and conky showing
#      the same player fields once a second: memory (PSS, USS), CPU, screen updates;
#   2. the player stopped: the same, with each thread's wake-ups;
#   3. a track change ("mpc next") until the title label is repainted, against mpc idle's
#      wake-up on the same change;
#   4. the Google Benchmarks: RefreshInfo of a 50-label skin, one player command four ways,
#      the process check;
#   5. start-up: exec to first painted Default skin against the bare window (startup-bench.sh).
# Prints a report (also written to BUILD_DIR/perf-report.txt). Not a test: the numbers belong to
# the machine they were taken on.
#
#   bench/perf/run-all.sh [BUILD_DIR] [SECONDS]     (defaults: build-perf, 60)
#
# BUILD_DIR: a Release build configured with -DPELORIN_BENCH=ON. Needs Xvfb, openbox, xdotool,
# mpd, mpc, conky (Debian "conky-std"), python3 and the xcb-damage headers at build time
# (libxcb-damage0-dev, for perf-screen-probe). PELORIN_PERF_CHANGES sets the number of track
# changes (20), PELORIN_PERF_STARTUP_RUNS the start-up runs (20; 0 skips them).
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)

# Window places (pixels); all three fit side by side on the 1280 x 800 screen.
pelorin_left=20
bare_left=360
conky_left=700
window_top=20
scroll_ms=150
progress_ms=500

say() { echo "$*" | tee -a "$REPORT"; }

# Sum of the CPU time of all threads of a process, in nanoseconds (from each thread's schedstat).
cpu_ns() {
    local total=0 t value
    for t in /proc/"$1"/task/*/schedstat; do
        value=$(cut -d' ' -f1 "$t" 2>/dev/null) || continue
        total=$((total + value))
    done
    echo "$total"
}

# utime + stime of the process (all threads), in clock ticks.
cpu_ticks() {
    # The command name may hold spaces: the fields after the closing parenthesis.
    sed 's/.*) //' /proc/"$1"/stat | awk '{ print $12 + $13 }'
}

# "PSS USS RSS" in KiB.
memory_kib() {
    awk '/^Rss:/ { r = $2 } /^Pss:/ { p = $2 } /^Private_Clean:/ { c = $2 }
         /^Private_Dirty:/ { d = $2 } END { print p, c + d, r }' /proc/"$1"/smaps_rollup
}

# Where a process's private memory lies: dirty (its own heap and data) and clean (file pages no
# other process maps), then the largest mappings.
private_breakdown() {
    python3 - "$1" <<'PY'
import collections, sys
mapping, dirty, clean = None, collections.Counter(), collections.Counter()
for line in open(f"/proc/{sys.argv[1]}/smaps"):
    field = line.split()
    if len(field) >= 5 and "-" in field[0] and not field[0].endswith(":"):
        mapping = field[5] if len(field) > 5 else "[anonymous]"
    elif field[0] == "Private_Dirty:":
        dirty[mapping] += int(field[1])
    elif field[0] == "Private_Clean:":
        clean[mapping] += int(field[1])
print(f"    private dirty {sum(dirty.values())} KiB, private clean {sum(clean.values())} KiB; largest:")
total = dirty + clean
for name, kib in total.most_common(8):
    print(f"    {kib:>7} KiB ({dirty[name]:>5} dirty)  {name}")
PY
}

# One line per thread: "TID NAME VOLUNTARY NONVOLUNTARY".
switches() {
    local t
    for t in /proc/"$1"/task/*; do
        printf '%s %s %s %s\n' "${t##*/}" "$(tr ' ' '_' <"$t/comm")" \
            "$(awk '/^voluntary_ctxt_switches/ { print $2 }' "$t/status")" \
            "$(awk '/^nonvoluntary_ctxt_switches/ { print $2 }' "$t/status")"
    done
}

wait_window() {
    local name=$1 id=''
    for _ in $(seq 200); do
        id=$(xdotool search --onlyvisible --name "^$name\$" 2>/dev/null | head -n 1) || true
        [[ -n $id ]] && break
        sleep 0.05
    done
    [[ -n $id ]] || { echo "run-all: no window \"$name\" appeared" >&2; return 1; }
    echo "$id"
}

# Skin copies of Default: PerfScroll has the title label scroll every 150 ms (a template that
# never fits; the artist and album labels do not scroll), PerfStill scrolls nothing, so its
# title label changes only when the track does.
make_skins() {
    local skins=$PELORIN_HOME/Skins
    cp -r "$skins/Default" "$skins/PerfScroll"
    # Skin files end their lines with CR LF.
    sed -e "s/^scrolltimer=[0-9]*/scrolltimer=$scroll_ms/" \
        -e 's/^label=100;9;190;18;\[Title\]/label=100;9;190;18;[Title] - [Artist] - [Album] ([Year], track [TrackNumber])/' \
        -e 's/^skinname=[A-Za-z]*/skinname=PerfScroll/' \
        "$skins/Default/skin.ini" >"$skins/PerfScroll/skin.ini"
    printf 'disablelabelscroll=2\r\ndisablelabelscroll=3\r\n' >>"$skins/PerfScroll/skin.ini"
    grep -q "scrolltimer=$scroll_ms" "$skins/PerfScroll/skin.ini" &&
        grep -q '\[Title\] - \[Artist\]' "$skins/PerfScroll/skin.ini" ||
        { echo "run-all: the Default skin changed; adapt make_skins" >&2; exit 1; }
    cp -r "$skins/Default" "$skins/PerfStill"
    grep -v '^scrolltimer=' "$skins/Default/skin.ini" |
        sed 's/^skinname=[A-Za-z]*/skinname=PerfStill/' >"$skins/PerfStill/skin.ini"
}

write_conky_config() {
    cat >"$WORK/conky.conf" <<EOF
-- The same player fields as the Default skin, redrawn once a second in a window of its size.
conky.config = {
    out_to_x = true, out_to_console = false,
    own_window = true, own_window_type = 'normal', own_window_title = 'conky-perf',
    own_window_hints = 'undecorated',
    alignment = 'top_left', gap_x = $conky_left, gap_y = $window_top,
    minimum_width = 320, maximum_width = 320, minimum_height = 100,
    update_interval = 1.0, double_buffer = true,
    use_xft = true, font = 'DejaVu Sans:size=8',
    background = false, default_color = 'f2f4f8',
    mpd_host = '$MPD_HOST',
};
conky.text = [[
\${mpd_title 40}
\${mpd_artist 40}
\${mpd_album 40}
\${mpd_elapsed} / \${mpd_length}
\${mpd_bar 4,300}
]]
EOF
}

start_pelorin() {
    local skin=$1
    "$BUILD/pelorin" "$PELORIN_HOME/Skins/$skin/|$((pelorin_left * 15))|$((window_top * 15))" \
        >>"$WORK/pelorin.log" 2>&1 &
    echo $!
}

stop_process() {
    local pid=$1
    kill "$pid" 2>/dev/null || return 0
    for _ in $(seq 50); do
        kill -0 "$pid" 2>/dev/null || { wait "$pid" 2>/dev/null || true; return 0; }
        sleep 0.1
    done
    kill -KILL "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
}

# Measures the three programs at once over SECONDS; writes NAME.measure files:
# cpu_ns ticks updates rectangles pss uss rss, and NAME.threads (switches per thread).
measure_three() {
    local phase=$1
    local -A before_ns before_ticks
    local name
    for name in pelorin bare conky; do
        switches "${PID[$name]}" >"$WORK/$phase.$name.switches-before"
        before_ns[$name]=$(cpu_ns "${PID[$name]}")
        before_ticks[$name]=$(cpu_ticks "${PID[$name]}")
    done
    "$BUILD/bench/perf/perf-screen-probe" count "$SECONDS_RUN" \
        "${WIN[pelorin]}" "${WIN[bare]}" "${WIN[conky]}" >"$WORK/$phase.updates"
    for name in pelorin bare conky; do
        local after_ns after_ticks
        after_ns=$(cpu_ns "${PID[$name]}")
        after_ticks=$(cpu_ticks "${PID[$name]}")
        switches "${PID[$name]}" >"$WORK/$phase.$name.switches-after"
        echo "$((after_ns - before_ns[$name])) $((after_ticks - before_ticks[$name]))" \
            "$(awk -v w="$(printf '0x%x' "${WIN[$name]}")" '$1 == w { print $3, $5 }' \
                "$WORK/$phase.updates")" "$(memory_kib "${PID[$name]}")" \
            >"$WORK/$phase.$name.measure"
        private_breakdown "${PID[$name]}" >"$WORK/$phase.$name.private"
    done
}

report_three() {
    local phase=$1 title=$2 expected=$3
    say ""
    say "== $title ($SECONDS_RUN s, all three at once)"
    python3 - "$WORK" "$phase" "$SECONDS_RUN" "$expected" "$(getconf CLK_TCK)" <<'EOF' | tee -a "$REPORT"
import sys
work, phase, seconds, expected, tck = sys.argv[1], sys.argv[2], float(sys.argv[3]), int(sys.argv[4]), int(sys.argv[5])
rows = {}
for name in ("pelorin", "bare", "conky"):
    ns, ticks, updates, rects, pss, uss, rss = open(f"{work}/{phase}.{name}.measure").read().split()
    rows[name] = dict(ns=int(ns), ticks=int(ticks), updates=int(updates), rects=int(rects),
                      pss=int(pss), uss=int(uss), rss=int(rss))
print(f"{'program':<22}{'CPU %':>9}{'(ticks)':>9}{'updates':>9}{'CPU/update':>12}{'PSS KiB':>10}{'USS KiB':>10}{'RSS KiB':>10}")
label = {"pelorin": "pelorin (skin)", "bare": "bare Qt window", "conky": "conky (1 s)"}
for name, r in rows.items():
    cpu = r["ns"] / 1e9 / seconds * 100
    tick_cpu = r["ticks"] / tck / seconds * 100
    per = f"{r['ns'] / 1e3 / r['updates']:.0f} us" if r["updates"] else "-"
    print(f"{label[name]:<22}{cpu:>8.3f}%{tick_cpu:>8.2f}%{r['updates']:>9}{per:>12}{r['pss']:>10}{r['uss']:>10}{r['rss']:>10}")
p, b, c = rows["pelorin"], rows["bare"], rows["conky"]
print(f"pelorin's timer ticks in this time: {expected} (scroll every 150 ms plus progress every 500 ms)")
if phase == "playing":
    ratio = p["uss"] / b["uss"]
    print(f"USS ratio pelorin / bare window: {ratio:.2f} x (goal <= 1.15 x): {'met' if ratio <= 1.15 else 'NOT met'}")
    cpu = p["ns"] / 1e9 / seconds * 100
    print(f"pelorin CPU: {cpu:.3f} % of one core (goal <= 0.3 %): {'met' if cpu <= 0.3 else 'NOT met'}")
    if p["updates"] and c["updates"]:
        pp = p["ns"] / p["updates"]
        cc = c["ns"] / c["updates"]
        print(f"CPU per screen update, pelorin / conky: {pp / 1e3:.0f} us / {cc / 1e3:.0f} us = {pp / cc:.2f} x (goal <= 1 x): {'met' if pp <= cc else 'NOT met'}")
    pt = p["ns"] / expected
    print(f"pelorin CPU per timer tick: {pt / 1e3:.0f} us")
EOF
}

report_switches() {
    local phase=$1 expected=$2
    say "wake-ups (voluntary context switches) per thread over $SECONDS_RUN s:"
    local name
    for name in pelorin bare conky; do
        join <(sort "$WORK/$phase.$name.switches-before") <(sort "$WORK/$phase.$name.switches-after") |
            awk -v n="$name" '{ printf "  %-8s %-18s %6d voluntary %5d involuntary\n", n, $2, $6 - $3, $7 - $4 }' |
            tee -a "$REPORT"
    done
    say "  (pelorin's timers in this time: $expected ticks)"
}

inside() {
    : >"$REPORT"
    say "Pelorin performance run, $(date -u '+%Y-%m-%d %H:%M UTC')"
    say "machine: $(nproc) CPUs, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'),"\
        "$(awk '/MemTotal/ { printf "%.1f GiB", $2 / 1048576 }' /proc/meminfo), Linux $(uname -r)"
    say "Qt $(pkg-config --modversion Qt6Core 2>/dev/null || echo '?'), build $BUILD," \
        "commit $(git -C "$root" rev-parse --short HEAD 2>/dev/null || echo '?')"

    # The demo player, silent.
    local demo
    demo=$(PELORIN_DEMO_OUTPUT=null "$root/scripts/demo.sh" "$BUILD" 2>&1) ||
        { echo "$demo" >&2; exit 1; }
    MPD_HOST=$(echo "$demo" | sed -n 's/^MPD_HOST=//p' | tail -n 1)
    export MPD_HOST
    mpc -q -h "$MPD_HOST" play
    mpc -q -h "$MPD_HOST" volume 50 || true

    make_skins
    write_conky_config
    declare -gA PID WIN
    PID[pelorin]=$(start_pelorin PerfScroll)
    "$BUILD/bench/bare_window/bare-window" "$bare_left" "$window_top" >>"$WORK/bare.log" 2>&1 &
    PID[bare]=$!
    conky -c "$WORK/conky.conf" >>"$WORK/conky.log" 2>&1 &
    PID[conky]=$!
    WIN[pelorin]=$(wait_window PerfScroll)
    WIN[bare]=$(wait_window bare-window)
    WIN[conky]=$(wait_window conky-perf)
    # Start-up work is over before the clock starts.
    sleep 3
    if command -v import >/dev/null; then
        import -window root -crop 1020x120+0+10 "$WORK/playing.png" 2>/dev/null &&
            cp "$WORK/playing.png" "$BUILD/perf-playing.png" || true
    fi

    local ticks=$((SECONDS_RUN * 1000 / scroll_ms + SECONDS_RUN * 1000 / progress_ms))
    measure_three playing
    report_three playing "Playing the demo library" "$ticks"
    report_switches playing "$ticks"
    say "private memory (USS) while playing, side by side:"
    local name
    for name in pelorin bare conky; do
        say "  $name:"
        tee -a "$REPORT" <"$WORK/playing.$name.private"
    done

    mpc -q -h "$MPD_HOST" stop
    sleep 2
    measure_three stopped
    report_three stopped "Player stopped" "$ticks"
    report_switches stopped "$ticks"

    # Track change: PerfStill alone, its title label watched.
    mpc -q -h "$MPD_HOST" play
    stop_process "${PID[pelorin]}"
    stop_process "${PID[bare]}"
    stop_process "${PID[conky]}"
    PID[pelorin]=$(start_pelorin PerfStill)
    WIN[pelorin]=$(wait_window PerfStill)
    sleep 3
    say ""
    say "== Track change (mpc next) -> title label repainted, against mpc idle's wake-up"
    "$BUILD/bench/perf/perf-screen-probe" track-change "${WIN[pelorin]}" 100 9 190 18 "$CHANGES" \
        "$MPD_HOST" >"$WORK/track-change.txt" || true
    tail -n 1 "$WORK/track-change.txt" | tee -a "$REPORT"
    awk '/^median/ { d = $7; printf "difference %.2f ms (goal <= 2 ms): %s\n", d, (d <= 2 ? "met" : "NOT met") }' \
        "$WORK/track-change.txt" | tee -a "$REPORT"
    sed 's/^/  /' "$WORK/track-change.txt" >>"$REPORT"
    stop_process "${PID[pelorin]}"

    say ""
    say "== Google Benchmarks"
    "$BUILD/bench/display_refresh_bench" --benchmark_out="$WORK/display.json" \
        --benchmark_out_format=json >/dev/null 2>"$WORK/display.err" || cat "$WORK/display.err" >&2
    # A round trip of microseconds swings with where the scheduler puts the two processes: the
    # median of five runs.
    "$BUILD/bench/perf_player_command_bench" --benchmark_out="$WORK/command.json" \
        --benchmark_out_format=json --benchmark_repetitions=5 \
        --benchmark_report_aggregates_only=true >/dev/null 2>"$WORK/command.err" || cat "$WORK/command.err" >&2
    "$BUILD/bench/process_check_bench" --benchmark_out="$WORK/process.json" \
        --benchmark_out_format=json >/dev/null 2>"$WORK/process.err" || cat "$WORK/process.err" >&2
    python3 - "$WORK" <<'EOF' | tee -a "$REPORT"
import json, sys
work = sys.argv[1]
def load(name):
    try:
        # "Name/real_time" for the benchmarks timed by the wall clock; of repeated ones, the median.
        found = {}
        for b in json.load(open(f"{work}/{name}.json"))["benchmarks"]:
            if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
                continue
            found[b["name"].split("/")[0]] = b
        return found
    except (OSError, ValueError, KeyError):
        return {}
def us(b):
    scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}[b.get("time_unit", "ns")]
    return b["real_time"] * scale
for name, b in {**load("display"), **load("process")}.items():
    print(f"{name:<44}{us(b):>10.1f} us   ({b['iterations']} iterations)")
c = load("command")
for name, b in c.items():
    runs = "median of 5 runs" if b.get("run_type") == "aggregate" else f"{b['iterations']} iterations"
    print(f"{name:<44}{us(b):>10.1f} us   ({runs}){'  ERROR ' + b.get('error_message', '') if b.get('error_occurred') else ''}")
def ratio(a, b, text):
    if a in c and b in c and not c[a].get("error_occurred") and not c[b].get("error_occurred"):
        print(f"{text:<44}{us(c[a]) / us(c[b]):>10.3f} x")
print("one command through Pelorin against mpc doing the same:")
ratio("DaemonPlayerSetVolume", "MpcSetVolume", "  setvol: DaemonPlayer / mpc volume")
ratio("RunCodeVolumeUpDown", "MpcSetVolume", "  volumeup: RunCode on the link / mpc volume")
ratio("DaemonPlayerNextTrack", "MpcNext", "  next: DaemonPlayer / mpc next")
ratio("RunCodeNextTrack", "MpcNext", "  nexttrack: RunCode on the link / mpc next")
ratio("DaemonPlayerSetVolume", "LibmpdclientSetVolume", "  setvol: DaemonPlayer / raw libmpdclient")
ratio("DaemonPlayerNextTrack", "LibmpdclientNext", "  next: DaemonPlayer / raw libmpdclient")
EOF
    PELORIN_DEMO_OUTPUT=null "$root/scripts/demo.sh" --stop >/dev/null 2>&1 || true
}

if [[ ${1:-} == --inside ]]; then
    inside
    exit
fi

BUILD=$(cd "${1:-$root/build-perf}" && pwd)
SECONDS_RUN=${2:-60}
CHANGES=${PELORIN_PERF_CHANGES:-20}
STARTUP_RUNS=${PELORIN_PERF_STARTUP_RUNS:-20}
for program in pelorin bench/bare_window/bare-window bench/perf/perf-screen-probe \
    bench/display_refresh_bench bench/perf_player_command_bench bench/process_check_bench \
    tools/make-demo-library; do
    if [[ ! -x $BUILD/$program ]]; then
        echo "run-all: $BUILD/$program is missing (configure with -DPELORIN_BENCH=ON and build" \
            "it; perf-screen-probe needs libxcb-damage0-dev)" >&2
        exit 1
    fi
done
for tool in Xvfb openbox xdotool mpd mpc conky python3; do
    command -v "$tool" >/dev/null || { echo "run-all: $tool is missing" >&2; exit 1; }
done

WORK=$(mktemp -d)
REPORT=$BUILD/perf-report.txt
xvfb_pid=''
cleanup() {
    # The demo player belongs to this run's private state folder.
    XDG_STATE_HOME=$WORK/home/.local/state "$root/scripts/demo.sh" --stop >/dev/null 2>&1 || true
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
export BUILD SECONDS_RUN CHANGES WORK REPORT

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$WORK/display" 2>"$WORK/xvfb.log" &
xvfb_pid=$!
for _ in $(seq 100); do
    [[ -s $WORK/display ]] && break
    sleep 0.05
done
[[ -s $WORK/display ]] || { echo "run-all: Xvfb did not start" >&2; exit 1; }
export DISPLAY=:$(head -n 1 "$WORK/display")

runner=()
command -v dbus-run-session >/dev/null && runner=(dbus-run-session --)
"${runner[@]}" "$root/scripts/with-window-manager.sh" "$0" --inside 2> >(grep -v 'dbus-daemon' >&2)

if ((STARTUP_RUNS > 0)); then
    echo "" | tee -a "$REPORT"
    echo "== Start-up: exec to first painted Default skin against the bare Qt window" | tee -a "$REPORT"
    "$here/../startup/startup-bench.sh" "$BUILD" "$STARTUP_RUNS" 2>&1 | grep -v dbus-daemon |
        tee -a "$REPORT"
fi
echo "" 
echo "Report written to $REPORT"
