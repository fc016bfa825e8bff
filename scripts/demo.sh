#!/usr/bin/env bash
# Installs what is missing, builds, starts five simulated servers on loopback and compares all of them with the sample
# repository. Leaves the results in build/demo.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

pattern=${1:-uefi|pmx|bmc|nic|raid}
install_packages
build release
cd "$root"

bin=$root/build/release/bin
demo=$root/build/demo
rm -rf "$demo"
mkdir -p "$demo"
# A list with passwords is taken only when nobody else can read it, and a checkout's files can be read by all.
install -m 600 "$root/samples/targets.json" "$demo/targets.json"

# The simulator ends with its standard input, so it does not outlive this script.
exec {stop}> >(exec "$bin/korvan_simulator" --config "$root/samples/fleet.json" --stop-on-eof \
  --cert-out "$demo/simulator.pem" --ready-file "$demo/ready.json" >"$demo/simulator.log" 2>&1)
simulator=$!
for _ in $(seq 100); do
  [ -s "$demo/ready.json" ] && break
  kill -0 "$simulator" 2>/dev/null || break
  sleep 0.1
done
if [ ! -s "$demo/ready.json" ]; then
  cat "$demo/simulator.log" >&2
  die "the simulator did not start; is one running already?"
fi

say "five simulated servers are up: 127.0.0.11 to 127.0.0.15, port 8443"
command=("$bin/korvan" update compare --config build/demo/targets.json --cacert "$demo/simulator.pem"
  --dir samples/repository --output "$demo/results" --pattern "$pattern")
printf '$ korvan'
printf ' %q' "${command[@]:1}"
printf '\n'
status=0
"${command[@]}" || status=$?

exec {stop}>&-
wait "$simulator" 2>/dev/null || true

say "the files of each target"
for folder in "$demo"/results/*/; do
  printf '%s\n' "${folder#"$root"/}"
  (cd "$folder" && printf '    %s\n' *)
done
say "the comparison of all targets"
printf '%s\n' "build/demo/results/compare_result.json"
exit "$status"
