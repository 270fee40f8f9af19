#!/bin/sh
# One check of the example's LV2 bundle with Debian's LV2 tools:
#   lv2_bundle_test.sh validate|list|info|tones <folder holding GainFilter.lv2>
# Exit 0 when it holds, 1 when not, 77 when a tool is missing.
set -eu
check=$1
lv2dir=$2
uri=urn:mirel:GainFilter

for tool in lv2_validate sord_validate lv2ls lv2info lv2apply sox; do
  command -v "$tool" >/dev/null 2>&1 || { echo "missing $tool (scripts/install-deps.sh)"; exit 77; }
done

# Hosts read and write the user's folders; the test gives them a temporary home.
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data"
export XDG_CACHE_HOME="$home/cache" LV2_PATH="$lv2dir"
cd "$home"

fail() { echo "FAIL: $*"; exit 1; }

case $check in
validate)
  out=$(lv2_validate "$lv2dir"/GainFilter.lv2/*.ttl 2>&1) || fail "lv2_validate: $out"
  echo "$out"
  echo "$out" | grep -q "Found 0 errors" || fail "lv2_validate reported errors"
  ;;
list)
  [ "$(lv2ls 2>/dev/null)" = "$uri" ] || fail "lv2ls lists: $(lv2ls 2>&1)"
  ;;
info)
  # symbol, name, minimum, maximum, default of each control port, in index order.
  got=$(lv2info "$uri" 2>/dev/null | awk '
    /^\tPort [0-9]+:/ { if (sym != "") print sym, name, min, max, def; sym = ""; min = max = def = "-" }
    /Symbol:/ { sym = $2 } /Name:/ { name = $2 } /Minimum:/ { min = $2 }
    /Maximum:/ { max = $2 } /Default:/ { def = $2 }
    END { if (sym != "") print sym, name, min, max, def }')
  expected="in1 In - - -
in2 In - - -
out1 Out - - -
out2 Out - - -
gain Gain -24.000000 12.000000 0.000000
cutoff Cutoff 20.000000 20000.000000 1000.000000
filter Filter 0.000000 1.000000 1.000000
slope Slope 0.000000 2.000000 0.000000
trim1 Trim1 -24.000000 12.000000 0.000000
trim2 Trim2 -24.000000 12.000000 0.000000
mode Mode 0.000000 2.000000 0.000000
output Output -60.000000 0.000000 -60.000000"
  [ "$got" = "$expected" ] || fail "ports differ:
$got"
  ;;
presets)
  # The factory presets, in their file's order, each with the input controls it sets.
  got=$(lv2info "$uri" 2>/dev/null | awk '/^\tPresets:/ { on = 1; next } on && /^\t +[^ ]/ { sub(/^\t +/, ""); print; next } { on = 0 }')
  expected="Default
Warm
Bright
Filter Off
Quiet"
  [ "$(echo "$got" | sort)" = "$(echo "$expected" | sort)" ] || fail "presets differ:
$got"
  # Warm: gain -3 dB, cutoff 800 Hz, 12 dB per octave.
  grep -A 30 'rdfs:label "Warm"' "$lv2dir"/GainFilter.lv2/presets.ttl |
    tr -d ' \n' | grep -q 'lv2:symbol"gain";pset:value-3.0\],\[lv2:symbol"cutoff";pset:value800.0' ||
    fail "the Warm preset's values"
  ;;
tones)
  # Two tones at -15 dB each through gain -6 dB and a one-pole low-pass at 500 Hz
  # (y = b0 x + a1 y[-1], a1 = exp(-2 pi 500 / fs)); each tone's level is measured alone by
  # cutting the other away with a steep sox filter, in and out.
  rate=48000
  sox -n -r $rate -c 2 -b 16 two.wav synth 2 sine 100 sine 10000 remix 1,2 1,2 vol 0.5
  lv2apply -i two.wav -o out.wav -c gain -6 -c cutoff 500 "$uri" || fail "lv2apply"
  level() { sox "$1" -n $2 stats 2>&1 | awk '/RMS lev dB/ { print $4 }'; }
  for tone in 100 10000; do
    if [ $tone = 100 ]; then cut="sinc -1000"; else cut="sinc 5000"; fi
    in=$(level two.wav "$cut")
    out=$(level out.wav "$cut")
    awk -v f=$tone -v fs=$rate -v lin="$in" -v lout="$out" 'BEGIN {
      pi = atan2(0, -1); a = exp(-2 * pi * 500 / fs); w = 2 * pi * f / fs
      re = 1 - a * cos(w); im = a * sin(w)
      want = 20 * log((1 - a) / sqrt(re * re + im * im)) / log(10) - 6
      got = lout - lin
      printf "%5d Hz: %.2f dB, arithmetic %.2f dB\n", f, got, want
      exit (got - want > 0.5 || want - got > 0.5) }' || fail "level of the $tone Hz tone"
  done
  ;;
*)
  echo "unknown check $check"; exit 2 ;;
esac
