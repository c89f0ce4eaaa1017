#!/bin/bash
# Builds the fuzz targets and runs each for some seconds (fuzz.sh SECONDS, default 20), starting from its committed
# inputs. A crash or a hang of over five seconds fails and leaves its input in build/fuzz.
cd "$(dirname "$0")/../.." || exit 1
(cmake --preset fuzz && cmake --build --preset fuzz) >build/fuzz.log 2>&1 || { tail -n 30 build/fuzz.log; exit 1; }
failed=0
for name in alarm start storage; do
    mkdir -p "build/fuzz/found-$name"
    "build/fuzz/tests/fuzz/kardel_fuzz_$name" -max_total_time="${1:-20}" -timeout=5 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/$name-" "build/fuzz/found-$name" "tests/fuzz/corpus/$name" >"build/fuzz/$name.log" 2>&1 ||
        { failed=1; tail -n 40 "build/fuzz/$name.log"; }
    echo "$name: $(grep -o 'number_of_executed_units: [0-9]*' "build/fuzz/$name.log") without a finding"
done
exit $failed
