#!/usr/bin/env bash
# Installs what is needed, builds everything and runs every test suite, then gives each fuzz
# target a short run.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default
cmake --build --preset default
ctest --preset default

cmake --preset fuzz
cmake --build --preset fuzz --target mirel_fuzzers
bash scripts/run-fuzzers.sh build/fuzz "${MIREL_FUZZ_SECONDS:-20}"
