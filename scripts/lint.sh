#!/usr/bin/env bash
# Checks formatting and runs clang-tidy over the sources. Usage: scripts/lint.sh [file...], default all.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

packages+=(clang-format clang-tidy)
install_packages
cd "$root"
files=("$@")
[ "${#files[@]}" -gt 0 ] || mapfile -t files < <(git ls-files '*.cpp' '*.h')
say "checking the format of ${#files[@]} files"
clang-format --dry-run --Werror "${files[@]}"
cmake --preset debug >/dev/null
cmake --build --preset debug --target korvan_framework >/dev/null # makes the generated header
mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep '\.cpp$')
say "running clang-tidy over ${#sources[@]} files"
printf '%s\n' "${sources[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/debug --quiet
