#!/usr/bin/env bash
# Installs what is needed, builds everything and runs every test suite, then gives each fuzz
# target a short run.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default
cmake --build --preset default
ctest --preset default 2>&1 | tee build/default/ctest-summary.log

# The code that threads touch (locks, idle queues, timers, the resource manager, Redis
# subscriptions, the algorithm's process lock, the recording shell's process side, meter reads
# handed to a shell's meter thread, host chunks beside main-thread preset loads, the calls other
# threads leave for the views' main thread, parameter values told to a host from its automation
# thread, the LV2 wrapper's worker and audio threads) runs once more under ThreadSanitizer.
tsan_suites=(core_thread_tests resources_tests redis_tests algorithm_tests process_tests meter_tests preset_tests view_tests control_tests lv2_wrapper_tests)
cmake --preset tsan
cmake --build --preset tsan --target "${tsan_suites[@]}"
for suite in "${tsan_suites[@]}"; do
  echo "== $suite under ThreadSanitizer"
  exe=$(find build/tsan/tests -type f -name "$suite" -perm -u+x | head -n 1)
  TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" MIREL_TESTING=1 "$exe" --gtest_brief=1
done

cmake --preset fuzz
cmake --build --preset fuzz --target mirel_fuzzers
bash scripts/run-fuzzers.sh build/fuzz "${MIREL_FUZZ_SECONDS:-20}"

# Repeat the test count last, so it is the closing line of the run.
summary=$(grep -E "tests passed, [0-9]+ tests failed out of [0-9]+" build/default/ctest-summary.log | tail -n 1)
failed=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/' <<<"$summary")
total=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\2/' <<<"$summary")
echo "ctest: $((total - failed)) passed, ${failed} failed"
