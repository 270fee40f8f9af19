#!/usr/bin/env bash
# run-fuzzers.sh <build-dir> <seconds>: runs every libFuzzer target found in the build folder for a
# bounded time, starting from its seed corpus under fuzz/corpus/<target> when there is one. The
# random seed is fixed (MIREL_FUZZ_SEED, default 1) so a run is repeatable; set another for a
# longer exploration.
set -euo pipefail
build=${1:-build/fuzz}
seconds=${2:-20}
root=$(cd "$(dirname "$0")/.." && pwd)

# The targets that start a plug-in make its preset folders: they go to a temporary home.
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" XDG_CACHE_HOME="$home/cache"

shopt -s nullglob
targets=("$build"/fuzz/*_fuzz)
if [ ${#targets[@]} -eq 0 ]; then
  echo "no fuzz targets built"
  exit 0
fi
for target in "${targets[@]}"; do
  name=$(basename "$target")
  work=$(mktemp -d)
  seeds=()
  [ -d "$root/fuzz/corpus/$name" ] && seeds=("$root/fuzz/corpus/$name")
  echo "== $name for ${seconds}s"
  log="$work.log"
  if ! "$target" -seed="${MIREL_FUZZ_SEED:-1}" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
      -artifact_prefix="$work/" "$work" "${seeds[@]}" >"$log" 2>&1; then
    # Show the finding and keep its input where it can be replayed.
    tail -n 60 "$log"
    echo "$name failed; its inputs and log are in $work"
    exit 1
  fi
  tail -n 4 "$log"
  rm -rf "$work" "$log"
done
