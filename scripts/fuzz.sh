#!/usr/bin/env bash
# Runs the libFuzzer targets (fuzz/, built by the preset asan into build-asan/fuzz/).
#
#   scripts/fuzz.sh [SECONDS] [TARGET...]
#
# Each target first replays its seed corpus and its regression inputs, then explores for
# SECONDS (default 20) from a working corpus in build-asan/fuzz-corpus/TARGET (seeded from
# fuzz/corpus/TARGET, kept between runs). A crash, a sanitizer report or a broken check stops
# with the input in build-asan/fuzz-findings/TARGET: add it to fuzz/regressions/TARGET once
# the fault is fixed. Run it longer on demand, e.g. scripts/fuzz.sh 3600 fuzz_format.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(fuzz_connection_string fuzz_format fuzz_icon_folder fuzz_property_bag fuzz_day_load)

scripts/install-deps.sh
cmake --preset asan >/dev/null
cmake --build --preset asan --parallel "$(nproc)" --target "${targets[@]}"

export QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS="suppressions=$PWD/tests/sanitizers/lsan-qt.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
status=0
for target in "${targets[@]}"; do
  fuzzer=build-asan/fuzz/$target
  corpus=build-asan/fuzz-corpus/$target
  findings=build-asan/fuzz-findings/$target
  mkdir -p "$corpus" "$findings"
  cp -n fuzz/corpus/"$target"/* "$corpus"/ 2>/dev/null || true
  inputs=(fuzz/corpus/"$target"/* fuzz/regressions/"$target"/*)
  existing=()
  for input in "${inputs[@]}"; do [ -f "$input" ] && existing+=("$input"); done
  echo "fuzz: $target: replaying ${#existing[@]} seed and regression inputs"
  if ! "$fuzzer" -runs=1 "${existing[@]}" >"$findings/replay.log" 2>&1; then
    tail -40 "$findings/replay.log"; echo "fuzz: $target fails on a committed input" >&2; status=1; continue
  fi
  echo "fuzz: $target: exploring for $seconds s"
  if "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=4096 -max_len=4096 \
       -artifact_prefix="$findings/" -print_final_stats=1 "$corpus" >"$findings/run.log" 2>&1; then
    grep -E "^stat::number_of_executed_units|^stat::peak_rss_mb" "$findings/run.log" | sed "s/^/fuzz: $target: /"
  else
    tail -60 "$findings/run.log"; echo "fuzz: $target found a failing input in $findings" >&2; status=1
  fi
done
exit $status
