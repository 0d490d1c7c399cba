#!/usr/bin/env bash
# Installs the Debian 12 packages the build needs (only those missing), then configures and
# builds everything into build/. Sourced by run.sh and test.sh.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

source scripts/packages.sh
install_missing cmake g++ make qt6-base-dev qt6-serialport-dev libgtest-dev libgmock-dev \
    fonts-dejavu-core

cmake --preset default
cmake --build --preset default -j"$(nproc)"
