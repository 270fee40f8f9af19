#!/usr/bin/env bash
# Installs every Debian package that the build, the tests, the benchmarks and the fuzzers need.
# The network is touched only when something is missing, so repeated runs are quick.
set -euo pipefail

packages=(
  build-essential g++ cmake ninja-build pkg-config git
  libgtest-dev libgmock-dev libbenchmark-dev
  libpugixml-dev libexpat1-dev libyaml-cpp-dev nlohmann-json3-dev
  libhiredis-dev libzip-dev zlib1g-dev libpng-dev libwebp-dev
  libboost-filesystem-dev libboost-regex-dev libboost-thread-dev libboost-dev
  redis-server redis-tools
  clang libclang-rt-14-dev
  librsvg2-bin
  libcairo2-dev fonts-dejavu-core
  lv2-dev lilv-utils lv2file sordi sox
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
"${sudo_cmd[@]}" apt-get update
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
