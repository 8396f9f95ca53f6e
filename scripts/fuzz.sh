#!/usr/bin/env bash
# Builds the libFuzzer targets (preset `fuzz`: clang, AddressSanitizer, UBSan) and runs each for
# SECONDS (default 60), FUZZ_JOBS at a time (default 1), at the lowest CPU priority. One line per target:
# executions, coverage, corpus size and the result. A crash leaves its input, and a minimized
# copy (.min), under build/fuzz/artifacts/<target>/: commit it to fuzz/corpus/<target>/ with the fix.
#   scripts/fuzz.sh [SECONDS] [TARGET...]
# New inputs found go to build/fuzz/corpus/<target>/ (kept between runs); the committed corpus
# in fuzz/corpus/ is read, never written.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
[[ $seconds =~ ^[0-9]+$ ]] || { echo "usage: scripts/fuzz.sh [SECONDS] [TARGET...]" >&2; exit 2; }

scripts/setup.sh fuzz
cmake --preset fuzz >/dev/null
nice -n 19 cmake --build --preset fuzz

targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for dir in fuzz/corpus/*/; do targets+=("$(basename "$dir")"); done
fi

# A target's dictionary: JSON syntax plus its own field names, or the /proc and /sys words.
dictionary() {
  local out=build/fuzz/dict/$1.dict
  mkdir -p build/fuzz/dict
  case $1 in
    proc_*) cat fuzz/dict/proc.dict ;;
    sys_*) cat fuzz/dict/sysfs.dict fuzz/dict/proc.dict ;;
    launch_options) cat fuzz/dict/launch_options.dict ;;
    *) cat fuzz/dict/json.dict "fuzz/dict/$1.dict" ;;
  esac > "$out"
  echo "$out"
}

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:allocator_may_return_null=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export TZ=UTC
printf '%-18s %12s %8s %8s %7s  %s\n' target executions cov ft corpus result

# Runs one target; its line goes to build/fuzz/logs/<target>.line, failure as exit status.
run_target() {
  local t=$1 binary=build/fuzz/fuzz/fuzz_$1
  local work=build/fuzz/corpus/$t artifacts=build/fuzz/artifacts/$t/ log=build/fuzz/logs/$t.log
  local line=build/fuzz/logs/$t.line
  mkdir -p "$work" "$artifacts" "$(dirname "$log")"
  if [ ! -x "$binary" ]; then
    printf '%-18s %12s %8s %8s %7s  %s\n' "$t" - - - - "FAILED (no such target)" >"$line"
    return 1
  fi
  local status=0
  nice -n 19 "$binary" "$work" "fuzz/corpus/$t" -dict="$(dictionary "$t")" \
    -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
    -artifact_prefix="$artifacts" -print_final_stats=1 >"$log" 2>&1 || status=$?
  local executions last cov ft corp result artifact kind
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  last=$(grep -E '^#[0-9]+.*cov: ' "$log" | tail -1 || true)
  cov=$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' <<<"$last")
  ft=$(sed -n 's/.* ft: \([0-9]*\).*/\1/p' <<<"$last")
  corp=$(sed -n 's/.* corp: \([0-9]*\).*/\1/p' <<<"$last")
  if [ "$status" -eq 0 ]; then
    result=ok
  else
    artifact=$(grep -oE "Test unit written to [^ ]+" "$log" | tail -1 | sed 's/Test unit written to //' || true)
    kind=$(grep -oE 'ERROR: (AddressSanitizer|UndefinedBehaviorSanitizer|LeakSanitizer|libFuzzer): [a-z-]+|runtime error: [^(]+|fuzz check failed: .*|ParseDictionaryFile: .*' "$log" | head -1 || true)
    if [ -n "$artifact" ] && [ -f "$artifact" ]; then
      # A smaller input that fails the same way, to commit with the fix.
      nice -n 19 "$binary" -minimize_crash=1 -max_total_time=30 -exact_artifact_path="$artifact.min" \
        "$artifact" >>"$log" 2>&1 || true
      [ -f "$artifact.min" ] && artifact=$artifact.min
    fi
    result="FAILED (${kind:-exit $status}) ${artifact:-} log: $log"
  fi
  printf '%-18s %12s %8s %8s %7s  %s\n' "$t" "${executions:-?}" "${cov:-?}" "${ft:-?}" "${corp:-?}" "$result" >"$line"
  [ "$status" -eq 0 ]
}

jobs=${FUZZ_JOBS:-1}
[[ $jobs =~ ^[1-9][0-9]*$ ]] || { echo "fuzz: FUZZ_JOBS must be a positive number" >&2; exit 2; }
failed=0
running=()
# Waits for the oldest running target and prints its line, so lines come in target order.
finish_oldest() {
  local t=${running[0]%%:*} pid=${running[0]#*:}
  wait "$pid" || failed=1
  cat "build/fuzz/logs/$t.line"
  running=("${running[@]:1}")
}
for t in "${targets[@]}"; do
  [ ${#running[@]} -lt "$jobs" ] || finish_oldest
  run_target "$t" &
  running+=("$t:$!")
done
while [ ${#running[@]} -gt 0 ]; do finish_oldest; done
exit $failed
