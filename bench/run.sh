#!/usr/bin/env bash
# Builds the benchmarks and prints each figure beside its target.
#
#   bench/run.sh [BUILD_DIR]
#
# BUILD_DIR defaults to build/, the build of `cmake --preset default`; it is configured when it
# does not exist yet. RK31_BENCH_RUNS sets the number of start-up runs (default 20). Figures are
# only meaningful for an optimised build (the default preset's RelWithDebInfo).
#
# Exit status: 0 when every benchmark ran, whether or not its targets were met ("met" or
# "MISSED" ends each figure line); 1 when the build or a benchmark failed.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=${1:-$root/build}
build=$(mkdir -p "$build" && cd "$build" && pwd)
runs=${RK31_BENCH_RUNS:-20}

if [[ ! -f $build/CMakeCache.txt ]]; then
    if [[ $build == "$root/build" ]]; then
        (cd "$root" && cmake --preset default >/dev/null)
    else
        cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
    fi
fi
if ! grep -q '^RK31_BUILD_TOOLS:BOOL=ON' "$build/CMakeCache.txt"; then
    cmake -S "$root" -B "$build" -DRK31_BUILD_TOOLS=ON >/dev/null
fi

log=$build/bench/run.log
mkdir -p "$build/bench"
: >"$log"
if ! cmake --build "$build" --target benchmarks -j2 >>"$log" 2>&1; then
    tail -n 40 "$log"
    echo "bench/run.sh: the build failed (whole log in $log)" >&2
    exit 1
fi

# The programs' messages (the offscreen plugin's warnings among them) go to the log; a benchmark
# that fails shows it.
run() {
    if ! "$@" 2>>"$log"; then
        tail -n 20 "$log"
        echo "bench/run.sh: '$*' failed (whole log in $log)" >&2
        exit 1
    fi
}

# The benchmarks set up the simulator themselves; the user's settings must not change the figures.
unset RK31_SIM RK31_DEVICE_LOG RK31_BENCH
export QT_QPA_PLATFORM=offscreen

bin=$build/bench
type=$(sed -n 's/^CMAKE_BUILD_TYPE:STRING=//p' "$build/CMakeCache.txt")
echo "RK31 GUI benchmarks: build $build (${type:-no build type}), $(nproc) cores," \
    "load average $(cut -d' ' -f1-3 /proc/loadavg)"
if [[ ${type:-} == Debug || -z ${type:-} ]]; then
    echo "note: not an optimised build; the figures overstate what users see"
fi

echo
echo "(a) Start-up of 'rk31gui /1' to its first painted window, beside a minimal Widgets program"
echo "    (the real binary, unchanged; a preloaded hook reports the first window and peak RSS)"
run "$bin/startup_bench" --runs "$runs" --hook "$bin/libfirst_window_hook.so" \
    --label offscreen --floor "$bin/minimal_widgets" --breakdown "$bin/startup_probe" \
    -- "$build/rk31gui" /1
if command -v xvfb-run >/dev/null 2>&1; then
    QT_QPA_PLATFORM=xcb run xvfb-run -a -s "-screen 0 1280x1024x24" \
        "$bin/startup_bench" --runs "$runs" --hook "$bin/libfirst_window_hook.so" \
        --label "xcb under Xvfb" --floor "$bin/minimal_widgets" -- "$build/rk31gui" /1
fi

echo
echo "(b) Program action of Part#1, four points, simulator without latency"
run "$bin/program_bench" 200

echo
echo "(c) Real-time output display over 10 s, magnet turning, Part#1 in ADC mode"
run "$bin/display_bench" 10 0
run "$bin/display_bench" 10 30
