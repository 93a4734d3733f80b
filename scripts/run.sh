#!/usr/bin/env bash
# Quick start: installs what is missing, builds build/pelorin and starts it on the bundled
# "Default" skin. Extra arguments go to Pelorin.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default
exec build/pelorin "$@"
