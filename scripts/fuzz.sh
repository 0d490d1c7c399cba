#!/usr/bin/env bash
# Builds the fuzz targets with clang and the sanitizers, then runs each on a copy of its seed
# corpus for the given number of seconds (default 60), as many at once as there are cores.
# Fails when any target reports a crash, a sanitizer finding, a hang or a leak of memory.
#   bash scripts/fuzz.sh [seconds] [target...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds="${1:-60}"
shift || true
targets=("$@")
if ((${#targets[@]} == 0)); then
    targets=(fuzz_settings fuzz_numbers fuzz_solvers fuzz_advanced fuzz_boxprotocol)
fi

source scripts/packages.sh
install_missing cmake make clang libclang-rt-14-dev qt6-base-dev qt6-serialport-dev

cmake --preset fuzz
cmake --build --preset fuzz -j"$(nproc)"

work="build-fuzz/runs"
rm -rf "$work"
mkdir -p "$work"
run() {
    local target="$1"
    local corpus="$work/$target"
    mkdir -p "$corpus"
    cp -r "fuzz/corpus/${target#fuzz_}/." "$corpus/"
    # A unit slower than 10 s counts as a hang; findings land in $work.
    if "build-fuzz/fuzz/$target" "$corpus" -max_total_time="$seconds" -timeout=10 \
        -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$work/$target-" \
        >"$work/$target.log" 2>&1; then
        echo "$target: $(grep -m1 -o 'stat::number_of_executed_units: *[0-9]*' "$work/$target.log" \
            | grep -o '[0-9]*$') inputs, no finding"
    else
        echo "$target: FINDING"
        tail -n 60 "$work/$target.log"
        return 1
    fi
}

export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
export QT_QPA_PLATFORM=offscreen
failed=0
pids=()
for target in "${targets[@]}"; do
    run "$target" &
    pids+=($!)
    if ((${#pids[@]} >= $(nproc))); then
        wait "${pids[0]}" || failed=1
        pids=("${pids[@]:1}")
    fi
done
for pid in "${pids[@]}"; do
    wait "$pid" || failed=1
done
exit "$failed"
