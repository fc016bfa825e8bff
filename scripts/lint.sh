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
mapfile -t sources < <(printf '%s\n' "${files[@]}" | grep '\.cpp$' | grep -v '_win32')
mapfile -t windows < <(printf '%s\n' "${files[@]}" | grep '_win32.*\.cpp$')
if [ "${#sources[@]}" -gt 0 ]; then
  say "running clang-tidy over ${#sources[@]} files"
  printf '%s\n' "${sources[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/debug --quiet
fi

# The files for Windows, with the cross compiler's headers; the commands come from scripts/build-windows.sh. Options that
# clang does not know are taken out of them.
[ "${#windows[@]}" -gt 0 ] || exit 0
if [ ! -f build/mingw/compile_commands.json ]; then
  say "leaving out ${#windows[@]} files for Windows: run scripts/build-windows.sh -DKORVAN_BUILD_TESTS=ON first"
  exit 0
fi
mkdir -p build/lint-windows
sed 's/ -fno-keep-inline-dllexport//g' build/mingw/compile_commands.json >build/lint-windows/compile_commands.json
gcc=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)")/include
options=(--target=x86_64-w64-mingw32 "-isystem$gcc/c++" "-isystem$gcc/c++/x86_64-w64-mingw32"
  -isystem/usr/x86_64-w64-mingw32/include)
say "running clang-tidy over ${#windows[@]} files for Windows"
printf '%s\n' "${windows[@]}" | xargs -P "$(nproc)" -n 4 \
  clang-tidy -p build/lint-windows --quiet "${options[@]/#/--extra-arg=}"
