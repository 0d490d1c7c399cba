#!/usr/bin/env bash
# Starts the program on the simulated programmer with the given switch (default "/1"). The first
# run installs what is missing, configures and builds the program (a few minutes); later runs
# rebuild only what changed in the program itself, so a second start takes seconds. On a
# machine without a display, run it under xvfb-run or with QT_QPA_PLATFORM=offscreen.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh" --program
exec ./build/rk31gui "${1:-/1}"
