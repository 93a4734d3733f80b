#!/usr/bin/env bash
# Installs what is missing, builds with AddressSanitizer and UndefinedBehaviorSanitizer (warnings
# are errors) and runs every test tier: logic, offscreen widgets, X11 on Xvfb with openbox, and
# the player against a real MPD. Then runs each fuzzer for PELORIN_FUZZ_SECONDS (default 60).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh

cmake --preset asan >/dev/null
cmake --build --preset asan

# Tests must not see the developer's own folders or session.
sandbox=$(mktemp -d)
trap 'rm -rf "$sandbox"' EXIT
mkdir -p "$sandbox"/{home,config,data,state,runtime}
chmod 700 "$sandbox/runtime"
export HOME="$sandbox/home" XDG_CONFIG_HOME="$sandbox/config" XDG_DATA_HOME="$sandbox/data" \
       XDG_STATE_HOME="$sandbox/state" XDG_RUNTIME_DIR="$sandbox/runtime"
unset MPD_HOST MPD_PORT WAYLAND_DISPLAY DISPLAY PELORIN_HOME

# The logic and offscreen tiers run two at a time; the X11 tier runs one test at a time, since its
# tests share one screen, its focus and its pointer.
dbus-run-session -- xvfb-run -a -s "-screen 0 1280x800x24" \
    scripts/with-window-manager.sh bash -c '
        set -eo pipefail
        ctest --preset asan -j2 -LE x11 "$@" | tee "$0/ctest-parallel.log"
        ctest --preset asan -j1 -L x11 "$@" | tee "$0/ctest-x11.log"
    ' "$sandbox" "$@"

seconds=${PELORIN_FUZZ_SECONDS:-60}
if [ "$seconds" -gt 0 ]; then
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz
    for fuzzer in build-fuzz/fuzz/*_fuzzer; do
        [ -x "$fuzzer" ] || continue
        name=$(basename "$fuzzer")
        corpus="$sandbox/corpus-$name"
        mkdir -p "$corpus"
        seeds="fuzz/corpus/${name%_fuzzer}"
        [ -d "$seeds" ] && cp -r "$seeds"/. "$corpus"/
        echo "Fuzzing $name for $seconds s"
        "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=4096 \
            -artifact_prefix="$sandbox/" "$corpus"
    done
fi

# The test count again as the last line, after the fuzzers' output.
passed=0 failed=0 skipped=0
for log in "$sandbox/ctest-parallel.log" "$sandbox/ctest-x11.log"; do
    summary=$(grep -E '[0-9]+ tests failed out of [0-9]+' "$log" | tail -n 1 || true)
    [ -n "$summary" ] || continue
    f=$(echo "$summary" | sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/')
    t=$(echo "$summary" | sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\2/')
    s=$(grep -cE '^\s+[0-9]+ - .*\(Skipped\)$' "$log" || true)
    passed=$((passed + t - f - s)) failed=$((failed + f)) skipped=$((skipped + s))
done
echo "tests: $passed passed, $failed failed, $skipped skipped"
