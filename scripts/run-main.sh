#!/usr/bin/env bash
# The main job: installs what is needed, builds the run-time, the example plug-in and the
# command-line host, and lets the host drive the example plug-in.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake --preset default
cmake --build --preset default --target mirel-host
build/default/tools/mirel-host demo
# Two users' sessions on the example's GUI, replayed without a window: a knob dragged and turned;
# a popup's menu, a tab, a radio button and a typed value.
build/default/tools/mirel-host replay examples/GainFilter/Scripts/knob-drag.yaml \
  --out build/default/tools/GUI-replay
exec build/default/tools/mirel-host replay examples/GainFilter/Scripts/controls-tour.yaml \
  --out build/default/tools/GUI-replay
