#!/usr/bin/env bash
# Installs the Debian 12 packages the build needs (only those missing), then configures and
# builds everything into build/. With --program (run.sh): configures only the first time and
# builds only the program, so that a later start takes seconds. Sourced by run.sh and test.sh.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

source scripts/packages.sh
install_missing cmake g++ make qt6-base-dev qt6-serialport-dev qt6-svg-dev libgtest-dev \
    libgmock-dev fonts-dejavu-core

if [ "${1:-}" = "--program" ]; then
    [ -f build/CMakeCache.txt ] || cmake --preset default
    cmake --build --preset default -j"$(nproc)" --target rk31gui
else
    cmake --preset default
    cmake --build --preset default -j"$(nproc)"
fi
