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

dbus-run-session -- xvfb-run -a -s "-screen 0 1280x800x24" \
    scripts/with-window-manager.sh ctest --preset asan -j2 "$@" | tee "$sandbox/ctest.log"

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
summary=$(grep -E '[0-9]+ tests failed out of [0-9]+' "$sandbox/ctest.log" | tail -n 1)
failed=$(echo "$summary" | sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/')
total=$(echo "$summary" | sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\2/')
skipped=$(grep -cE '^\s+[0-9]+ - .*\(Skipped\)$' "$sandbox/ctest.log" || true)
echo "tests: $((total - failed - skipped)) passed, $failed failed, $skipped skipped"
