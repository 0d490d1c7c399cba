#!/usr/bin/env bash
# Sets up and builds, then runs the whole test suite (GoogleTest and Qt Test, offscreen).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
ctest --preset default -j"$(nproc)"
