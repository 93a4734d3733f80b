#!/usr/bin/env bash
# Quick start: installs what is missing, builds build/pelorin, starts a demo player on a
# generated library (unless MPD_HOST already names your own player) and starts Pelorin on the
# bundled "Default" skin, connected to it. Extra arguments go to Pelorin.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset default >/dev/null
# Only what this command runs: the program, its skins and documents, and the demo library's
# generator (the test programs are for scripts/test.sh).
cmake --build --preset default --target pelorin pelorin_data make-demo-library
if [ -z "${MPD_HOST:-}" ]; then
    demo=$(scripts/demo.sh build)
    echo "$demo" | grep -v '^MPD_HOST=' || true
    MPD_HOST=$(echo "$demo" | sed -n 's/^MPD_HOST=//p' | tail -n 1)
    export MPD_HOST
fi
exec build/pelorin default "$@"
