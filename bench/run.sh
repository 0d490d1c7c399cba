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

# The benchmarks set up the simulator themselves, and the program loads the build's own; the
# user's settings must not change the figures.
unset RK31_SIM RK31_DEVICE_LOG RK31_BENCH RK31_DRIVER RK31_DRIVER_PATH
export QT_QPA_PLATFORM=offscreen

bin=$build/bench
type=$(sed -n 's/^CMAKE_BUILD_TYPE:STRING=//p' "$build/CMakeCache.txt")
echo "RK31 GUI benchmarks: build $build (${type:-no build type}), $(nproc) cores," \
    "load average $(cut -d' ' -f1-3 /proc/loadavg)"
if [[ ${type:-} == Debug || -z ${type:-} ]]; then
    echo "note: not an optimised build; the figures overstate what users see"
fi

echo
echo "(a) Start-up to the first painted window, beside two floors: the smallest Widgets program,"
echo "    and a plain window holding the same controls with their texts and no logic (the"
echo "    toolkit's real floor for that window); the real binary, unchanged, with a preloaded hook"
echo "    that reports the first window and peak RSS"
for switch in /1 /4; do
    controls=$build/bench/controls${switch//\//_}.txt
    run "$bin/control_dump" "$switch" >"$controls"
    breakdown=()
    if [[ $switch == /1 ]]; then
        breakdown=(--breakdown "$bin/startup_probe")
        run "$bin/startup_bench" --runs "$runs" --hook "$bin/libfirst_window_hook.so" \
            --label "offscreen, $switch" --floor "$bin/minimal_widgets" \
            -- "$build/rk31gui" "$switch"
    fi
    run "$bin/startup_bench" --runs "$runs" --hook "$bin/libfirst_window_hook.so" \
        --label "offscreen, $switch, same controls" --floor "$bin/same_controls $controls" \
        --target 1.05 "${breakdown[@]}" -- "$build/rk31gui" "$switch"
    if command -v xvfb-run >/dev/null 2>&1; then
        # -noreset: the server's reset after each client is not the program's start-up.
        QT_QPA_PLATFORM=xcb run xvfb-run -a -s "-screen 0 1280x1024x24 -noreset" \
            "$bin/startup_bench" --runs "$runs" --hook "$bin/libfirst_window_hook.so" \
            --label "xcb under Xvfb, $switch, same controls" \
            --floor "$bin/same_controls $controls" --target 1.05 -- "$build/rk31gui" "$switch"
    fi
done

echo
echo "(b) Program action of Part#1, four points, simulator without latency"
run "$bin/program_bench" 200

echo
echo "(c) Real-time output display over 10 s, magnet turning, Part#1 in ADC mode"
for latency in 0 30 60; do
    run "$bin/display_bench" 10 "$latency"
done

echo
echo "(d) rk31prog on a production line: 1,000 chips in a row, both parts programmed and verified,"
echo "    simulator without latency"
run "$bin/batch_bench" 1000

echo
echo "(e) Real-time output display through an eight-hour day (288,000 ticks), Part#1 in ADC mode,"
echo "    simulator without latency: resident memory"
run "$bin/display_memory_bench" 8

echo
echo "(f) The serial line: one Program action and one chip of rk31prog over a pseudo-terminal with"
echo "    rk31-boxsim at 115,200 and 1,000,000 baud, beside the in-process simulator"
run "$bin/serial_bench" "$build/rk31-boxsim" "$build/rk31prog" 20
