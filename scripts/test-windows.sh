#!/usr/bin/env bash
# Builds for Windows and runs the tests under Wine: the unit tests, the end-to-end tests, and a comparison of what both
# systems' programs make of the same servers. Needs the programs of this system too, for that comparison.
# Usage: scripts/test-windows.sh [NAME...], only the test programs of these names.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

"$root/scripts/build-windows.sh" -DKORVAN_BUILD_TESTS=ON
packages+=(wine64 wine)
install_packages
cd "$root"

export WINEPREFIX=$root/build/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml,winedbg.exe=' LC_ALL=C.UTF-8
bin=$root/build/mingw
results=$root/build/windows-results
rm -rf "$results"
mkdir -p "$results" "$WINEPREFIX"
# The 64-bit half of Wine says that the 32-bit one is missing; nothing here needs it.
wineboot --init >/dev/null 2>&1 || die 'Wine could not make its folder'
trap 'wineserver --kill 2>/dev/null || true' EXIT

# What Wine cannot do: "TestCase.Name reason" a line. These are left out of the run, counted and named at its end.
excluded=()
while read -r test _; do
  case $test in '' | '#'*) ;; *) excluded+=("$test") ;; esac
done <tests/wine_exclusions.txt
filter="*-$(IFS=:; echo "${excluded[*]}")"

passed=0 failed=0 skipped=0
problems=()
run_program() {
  local program=$1 name report status=0
  name=$(basename "$program" .exe)
  report=$results/$name.xml
  timeout 900 wine "$program" --gtest_filter="$filter" --gtest_output="xml:Z:$report" >"$results/$name.log" 2>&1 </dev/null ||
    status=$?
  if [ ! -s "$report" ]; then
    problems+=("$name ended with status $status before its report; see $results/$name.log")
    return
  fi
  local counts
  counts=$(sed -nE '2s/.*tests="([0-9]+)" failures="([0-9]+)" disabled="([0-9]+)" errors="([0-9]+)".*/\1 \2 \3 \4/p' "$report")
  local tests failures disabled errors skips
  read -r tests failures disabled errors <<<"$counts"
  skips=$(grep -c 'result="skipped"' "$report" || true)
  passed=$((passed + tests - failures - errors - skips - disabled))
  failed=$((failed + failures + errors))
  skipped=$((skipped + skips + disabled))
  printf '%-28s %4d tests, %d failed\n' "$name" "$tests" $((failures + errors))
  if [ $((failures + errors)) -ne 0 ]; then
    grep -aE '^\[  FAILED  \] [A-Za-z0-9_]+\.' "$results/$name.log" | sort -u
    problems+=("$name: $((failures + errors)) tests failed; see $results/$name.log")
  elif [ "$status" -ne 0 ]; then
    problems+=("$name ended with status $status although its tests passed; see $results/$name.log")
  fi
}

say "running the tests under $(wine --version)"
while read -r program; do
  if [ $# -eq 0 ] || [[ " $* " == *" $(basename "$program" .exe) "* ]]; then
    run_program "$program"
  fi
done <"$bin/test_programs.txt"

if [ $# -eq 0 ]; then
  say 'comparing what both systems make of the same servers'
  build release
  tests/windows/same_reports.sh "$root/build/release/bin" "$bin/bin" || problems+=('the reports of both systems differ')
  say 'typing at the program'
  tests/windows/ctrl_c.sh "$root/build/release/bin" "$bin/bin" || problems+=('the program on a terminal does not do what it must')
fi

say "Windows: $passed passed, $failed failed, $skipped skipped, ${#excluded[@]} left out"
sed -nE 's/^([^#].*)/  left out: \1/p' tests/wine_exclusions.txt
[ "${#problems[@]}" -eq 0 ] || { printf 'error: %s\n' "${problems[@]}" >&2; exit 1; }
