#!/usr/bin/env bash
# Installs the build into a scratch prefix, builds the example drivers in drivers/ against the
# installed RK31Driver package, and runs the installed rk31prog with them.
# Arguments: the build folder, the example drivers' source folder.
set -euo pipefail
build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAIL: $1" >&2
    echo "--- output:" >&2
    echo "$out" >&2
    exit 1
}

cmake --install "$build" --prefix "$work/prefix" >/dev/null
cmake -S "$source" -B "$work/drivers" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/drivers" -j2 >/dev/null

printf 'Part #Index:0\r\nDirection is:0\r\nDP is(deg):260.00\r\nClamp High is(%%):95.00\r\nClamp Low is(%%):5.00\r\nAngle of Point A is(deg):20.00\r\nLevel of Point A is(%%):10.00\r\nAngle of Point B is(deg):200.00\r\nLevel of Point B is(%%):90.00\r\n' >"$work/part1.txt"
prog=$work/prefix/bin/rk31prog
export RK31_SIM="latency=0"

# Another driver for the device wins over the installed simulator; the two that cannot serve
# are named on standard error.
set +e
out=$(RK31_DRIVER_PATH="$work/drivers" "$prog" program "$work/part1.txt" --port 4 -q 2>&1)
code=$?
set -e
[ "$code" = 2 ] || fail "the example driver's failure should exit 2, not $code"
grep -q " COM4 .* Part#1 FAIL connect: example driver: no box on COM4" <<<"$out" || fail "the example driver was not used"
grep -q "^rk31: driver .*olddriver.*: has the wrong interface version" <<<"$out" ||
    fail "the old driver is not reported"
grep -q "^rk31: driver .*emptydriver.*: provides nothing" <<<"$out" ||
    fail "the empty driver is not reported"

# RK31_DRIVER picks the installed simulator.
set +e
out=$(RK31_DRIVER=sim RK31_DRIVER_PATH="$work/drivers" "$prog" program "$work/part1.txt" --port 1 -q 2>&1)
code=$?
set -e
[ "$code" = 0 ] || fail "programming on the installed simulator should exit 0, not $code"

# Without any driver: the connect message, no crash.
rm -f "$work"/prefix/lib*/rk31gui/drivers/*
set +e
out=$("$prog" program "$work/part1.txt" --port 1 -q 2>&1)
code=$?
set -e
[ "$code" = 2 ] || fail "no driver should exit 2, not $code"
grep -q "Part#1 FAIL connect: No device driver provides QZ7734Module.QZ7734Device! Searched: " <<<"$out" ||
    fail "no driver is not said"
# The window program starts without any driver as well (and runs until it is stopped).
set +e
out=$(QT_QPA_PLATFORM=offscreen timeout 3 "$work/prefix/bin/rk31gui" /1 2>&1)
code=$?
set -e
[ "$code" = 124 ] || fail "rk31gui without a driver ended with $code instead of running"
echo "out-of-tree driver: ok"
