#!/usr/bin/env bash
# Builds the Debian package from build/, installs it as a user would, starts the installed
# program on a virtual display until its window shows, and removes the package again.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

source scripts/packages.sh
install_missing xvfb xdotool dpkg-dev

(cd build && rm -f rk31gui_*.deb && cpack -G DEB)
package=$(ls build/rk31gui_*.deb)
DEBIAN_FRONTEND=noninteractive apt-get install -y "./$package"
trap 'apt-get remove -y rk31gui >/dev/null' EXIT

display=:77
Xvfb "$display" -screen 0 1280x720x24 -noreset >/dev/null 2>&1 &
xvfb=$!
trap 'kill $xvfb 2>/dev/null; apt-get remove -y rk31gui >/dev/null' EXIT
sleep 1
DISPLAY=$display /usr/bin/rk31gui /1 >/dev/null 2>&1 &
program=$!
for _ in $(seq 1 40); do
    if DISPLAY=$display xdotool search --name "RK31 GUI - QZ7734" >/dev/null 2>&1; then
        echo "installed rk31gui showed its window"
        kill "$program"
        exit 0
    fi
    sleep 0.25
done
echo "installed rk31gui showed no window within 10 s" >&2
kill "$program" 2>/dev/null || true
exit 1
