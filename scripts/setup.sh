#!/usr/bin/env bash
# Installs the Debian 12 packages the build needs (only those missing), then configures and
# builds everything into build/. With --program (run.sh): configures only the first time and
# builds only the program, so that a later start takes seconds. Sourced by run.sh and test.sh.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

packages=(cmake g++ make qt6-base-dev qt6-serialport-dev qt6-svg-dev libgtest-dev libgmock-dev
          fonts-dejavu-core)
missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done
if ((${#missing[@]} > 0)); then
    sudo=""
    if [ "$(id -u)" -ne 0 ]; then
        sudo=sudo
    fi
    echo "Installing: ${missing[*]}"
    $sudo apt-get update
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
fi

if [ "${1:-}" = "--program" ]; then
    [ -f build/CMakeCache.txt ] || cmake --preset default
    cmake --build --preset default -j"$(nproc)" --target rk31gui
else
    cmake --preset default
    cmake --build --preset default -j"$(nproc)"
fi
