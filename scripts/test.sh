#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test. Usage: scripts/test.sh [PRESET] [ctest option...], default
# "release"; "asan" and "tsan" run the same tests under the sanitizers.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

preset=${1:-release}
[ $# -gt 0 ] && shift
install_packages
build "$preset"
cd "$root"
say "running the tests of the $preset preset"
exec ctest --preset "$preset" --parallel "$(nproc)" "$@"
