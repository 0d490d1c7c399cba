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

# The About box points to the README and the user guide the package carries.
for doc in README.md user-guide.md; do
    if [ ! -f "/usr/share/doc/rk31gui/$doc" ]; then
        echo "the package does not carry $doc" >&2
        exit 1
    fi
done

# The installed programs find the installed simulated programmer: rk31prog programs a chip on it.
sample=$(mktemp)
printf 'Part #Index:0\r\nDirection is:0\r\nDP is(deg):260.00\r\nClamp High is(%%):95.00\r\nClamp Low is(%%):5.00\r\nAngle of Point A is(deg):20.00\r\nLevel of Point A is(%%):10.00\r\nAngle of Point B is(deg):200.00\r\nLevel of Point B is(%%):90.00\r\n' >"$sample"
if ! (cd / && env -u RK31_DRIVER_PATH RK31_SIM='latency=0;angle=100' /usr/bin/rk31prog program \
    "$sample" --port 1 --verify -q); then
    echo "installed rk31prog could not program a chip on the installed simulated programmer" >&2
    rm -f "$sample"
    exit 1
fi
echo "installed rk31prog programmed and verified a chip on the installed driver"

# The installed rk31-boxsim serves the simulated box on a pseudo-terminal, and the installed
# rk31prog programs a chip on it through the installed serial driver.
boxdir=$(mktemp -d)
(cd / && exec env RK31_SIM='latency=0;angle=100' /usr/bin/rk31-boxsim --link="$boxdir/box" \
    >"$boxdir/announced") &
boxsim=$!
for _ in $(seq 1 40); do
    [ -s "$boxdir/announced" ] && break
    sleep 0.25
done
if ! (cd / && env -u RK31_DRIVER_PATH -u RK31_SIM RK31_DRIVER=serial \
    RK31_SERIAL_PORTS="$boxdir/box" /usr/bin/rk31prog program "$sample" --port 1 --verify -q); then
    echo "installed rk31prog could not program a chip over the installed serial driver" >&2
    kill "$boxsim" 2>/dev/null || true
    rm -rf "$sample" "$boxdir"
    exit 1
fi
kill "$boxsim" 2>/dev/null || true
rm -rf "$sample" "$boxdir"
echo "installed rk31prog programmed and verified a chip over the serial driver and rk31-boxsim"

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
