#!/usr/bin/env bash
# install_missing PACKAGE...: installs those of the Debian packages that are not installed yet
# (with sudo when not root). Sourced by the scripts that need packages.
install_missing() {
    local missing=() package sudo=""
    for package in "$@"; do
        if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
            missing+=("$package")
        fi
    done
    if ((${#missing[@]} == 0)); then
        return 0
    fi
    if [ "$(id -u)" -ne 0 ]; then
        sudo=sudo
    fi
    echo "Installing: ${missing[*]}"
    $sudo apt-get update
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
}
