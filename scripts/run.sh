#!/usr/bin/env bash
# Sets up and builds, then starts the program on the simulated programmer with the given
# switch (default "/1"). On a machine without a display, set QT_QPA_PLATFORM=offscreen or run
# it under xvfb-run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
exec ./build/rk31gui "${1:-/1}"
