#!/usr/bin/env bash
# Installs what is missing and builds. Usage: scripts/build.sh [PRESET], default "release".
set -euo pipefail
. "$(dirname "$0")/lib.sh"

preset=${1:-release}
install_packages
build "$preset"
say "the programs are in build/$preset/bin"
