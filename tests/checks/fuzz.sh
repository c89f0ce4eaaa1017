#!/bin/bash
# Builds the fuzz targets and runs each for some seconds (fuzz.sh SECONDS, default 20), starting from its committed
# inputs. A crash or a hang of over five seconds fails and leaves its input in build/fuzz.
cd "$(dirname "$0")/../.." || exit 1
(cmake --preset fuzz && cmake --build --preset fuzz) >build/fuzz.log 2>&1 || { tail -n 30 build/fuzz.log; exit 1; }
# Side by side, as many as there are processors.
run() {
    mkdir -p "build/fuzz/found-$1"
    "build/fuzz/tests/fuzz/kardel_fuzz_$1" -max_total_time="$2" -timeout=5 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/$1-" "build/fuzz/found-$1" "tests/fuzz/corpus/$1" >"build/fuzz/$1.log" 2>&1 ||
        { tail -n 40 "build/fuzz/$1.log"; exit 1; }
    echo "$1: $(grep -o 'number_of_executed_units: [0-9]*' "build/fuzz/$1.log") without a finding"
}
export -f run
printf '%s\n' alarm start storage | xargs -P "$(nproc)" -I {} bash -c 'run {} "$0"' "${1:-20}"
