#!/usr/bin/env bash
# Compares a fleet of simulated targets with the sample repository and prints how long that took as a ratio to the bound
# requests x latency / parallel, and korvan's peak memory. It judges nothing: the numbers depend on the machine.
#
# benchmarks/fleet.sh [TARGETS [LATENCY_MS [PARALLEL]]]     500 50 16 without them
set -euo pipefail
. "$(dirname "$0")/../scripts/lib.sh"

targets=${1:-500}
latency=${2:-50}
parallel=${3:-16}
bin=${KORVAN_BIN:-$root/build/release/bin}
server=${KORVAN_SERVER:-rack-a}
work=$root/build/benchmark-fleet

for number in "$targets" "$latency" "$parallel"; do
  [[ $number =~ ^[1-9][0-9]*$ ]] || die "targets, latency and parallel are whole numbers above 0"
done
[ -x /usr/bin/time ] || die "/usr/bin/time is missing, which measures the memory; install the package 'time'"
for program in korvan korvan_simulator; do
  [ -x "$bin/$program" ] || die "$bin/$program is missing; build it with scripts/build.sh or name a folder in KORVAN_BIN"
done
# The simulator listens for each controller, and each of them may have several connections.
needed=$((targets * 6 + 200))
if [ "$(ulimit -n)" != unlimited ] && [ "$(ulimit -n)" -lt "$needed" ]; then
  ulimit -n "$needed" || die "at least $needed open files are needed; raise the limit (ulimit -Hn shows $(ulimit -Hn))"
fi

rm -rf "$work"
mkdir -p "$work"
cat >"$work/fleet.json" <<FLEET
{ "controllers": [ { "name": "target", "folder": "$root/samples/servers/$server", "address": "127.0.8.1", "port": 0,
  "user": "admin", "password": "Sample-Passw0rd", "count": $targets, "latency_ms": $latency } ] }
FLEET

# The simulator ends with its standard input, so it does not outlive this script.
exec {stop}> >(exec "$bin/korvan_simulator" --config "$work/fleet.json" --stop-on-eof --cert-out "$work/ca.pem" \
  --ready-file "$work/ready.json" --stats "$work/stats.json" >"$work/simulator.log" 2>&1)
simulator=$!
for _ in $(seq 600); do
  [ -s "$work/ready.json" ] && break
  kill -0 "$simulator" 2>/dev/null || break
  sleep 0.1
done
[ -s "$work/ready.json" ] || { cat "$work/simulator.log" >&2; die "the simulator did not start"; }

{
  printf '{"targets":['
  sed -n 's|^target[^ ]* https://\(.*\)$|\1|p' "$work/simulator.log" | while read -r address; do
    printf '%s{"kind":"bmc","address":"%s","user":"admin","password":"Sample-Passw0rd"}\n' "${separator:-}" "$address"
    separator=,
  done
  printf ']}'
} >"$work/targets.json"
chmod 600 "$work/targets.json"

say "comparing $targets targets, $latency ms before each answer, $parallel at once"
status=0
/usr/bin/time -f '%e %M %U %S' -o "$work/time.txt" \
  "$bin/korvan" update compare --config "$work/targets.json" --cacert "$work/ca.pem" --parallel "$parallel" \
  --dir "$root/samples/repository" --output "$work/results" >"$work/korvan.out" 2>"$work/korvan.err" || status=$?

exec {stop}>&-
for _ in $(seq 300); do
  [ -s "$work/stats.json" ] && break
  sleep 0.1
done
[ -s "$work/stats.json" ] || die "the simulator left no statistics; see $work/simulator.log"

# The totals stand at the outermost level, indented by two blanks.
total() { sed -n "s/^  \"$1\": \([0-9]*\),\{0,1\}$/\1/p" "$work/stats.json"; }
# A status other than 0 puts a line of its own in front of the measurements.
tail -n 1 "$work/time.txt" | awk -v targets="$targets" -v latency="$latency" -v parallel="$parallel" \
  -v status="$status" -v requests="$(total requests)" -v sessions="$(total sessions_open)" '
  {
    bound = requests * latency / 1000 / parallel
    printf "exit status      %d\n", status
    printf "requests         %d (%.1f a target), %d sessions left open\n", requests, requests / targets, sessions
    printf "bound            %.2f s (requests x latency / parallel)\n", bound
    printf "time             %.2f s, of which korvan had a processor for %.2f s\n", $1, $3 + $4
    printf "ratio            %.2f\n", $1 / bound
    printf "peak memory      %.1f MB\n", $2 / 1024
  }' | tee "$work/summary.txt"
exit "$status"
