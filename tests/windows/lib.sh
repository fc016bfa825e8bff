# What the scripts of this folder share; sourced, not run. It takes the words of the script that sources it, which are
# FOLDER-OF-THIS-SYSTEMS-PROGRAMS FOLDER-OF-THE-WINDOWS-PROGRAMS, and sets root, own, windows, and work, a new folder
# that goes with the script.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
own=$1 windows=$2
work=$(mktemp -d)
simulator=

fail() { printf 'error: %s\n' "$*" >&2; exit 1; }

finish() {
  if [ -n "$simulator" ]; then
    exec {stop}>&- || true
    wait "$simulator" 2>/dev/null || true
  fi
  rm -rf "$work"
}
trap finish EXIT

# Starts this system's simulator with the fleet file of the standard input, waits until it is ready, and goes to the
# work folder. Then `ready` there holds its addresses, `ca.pem` its certificate and `packages` the sample repository.
# While the descriptor `stop` is open, it runs; a child that outlives the script must close it.
start_simulator() {
  cat >"$work/fleet.json"
  exec {stop}> >(exec "$own/korvan_simulator" --config "$work/fleet.json" --stop-on-eof --cert-out "$work/ca.pem" >"$work/ready" 2>&1)
  simulator=$!
  for _ in $(seq 100); do
    grep -qsx ready "$work/ready" && break
    sleep 0.1
  done
  grep -qsx ready "$work/ready" || fail "the simulator did not start: $(cat "$work/ready")"
  cp -r "$root/samples/repository" "$work/packages"
  cd "$work"
}
