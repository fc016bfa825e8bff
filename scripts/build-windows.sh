#!/usr/bin/env bash
# Cross-builds for Windows with MinGW-w64 on Debian 12, checks what the files import and export, and makes
# dist/korvan-<version>-windows-x64.zip. The first run also builds the libraries, into build/windows-deps.
set -euo pipefail
. "$(dirname "$0")/lib.sh"
. "$(dirname "$0")/windows_dependencies.sh"

# Usage: imports FILE, the names of the libraries that it needs; exports FILE, the names that it offers.
imports() { x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^[[:space:]]*DLL Name: //p'; }
exports() { x86_64-w64-mingw32-objdump -p "$1" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^[[:space:]]*\[[ 0-9]*\] //p'; }
imported_names() { # FILE LIBRARY
  x86_64-w64-mingw32-objdump -p "$1" | sed -n "/DLL Name: $2/,/DLL Name:/s/^[[:space:]]*[0-9a-f]*[[:space:]]*[0-9]*  \([A-Za-z_?@].*\)/\1/p"
}

# What every Windows from 10 and Server 2016 on has.
windows_libraries='advapi32 bcrypt crypt32 kernel32 msvcrt mswsock ole32 setupapi shell32 user32 ws2_32'

check_files() {
  local bin=$1 file library name problems=0
  for file in korvan.exe korvan_simulator.exe korvan_framework.dll korvan_update_multicompare.dll; do
    for library in $(imports "$bin/$file"); do
      case " $windows_libraries korvan_framework " in
        *" $(tr '[:upper:]' '[:lower:]' <<<"${library%.*}") "*) ;;
        *) printf 'error: %s imports %s, which is no part of Windows\n' "$file" "$library" >&2; problems=1 ;;
      esac
    done
  done
  local module=$bin/korvan_update_multicompare.dll exported imported
  exported=$(exports "$module")
  imported=$(imported_names "$module" korvan_framework.dll)
  grep -qx create_instance <<<"$exported" || { printf 'error: the module exports no create_instance\n' >&2; problems=1; }
  for name in $(grep -vxE 'create_instance|_ZNK13BasicMultiApp14ConfirmMessage.*' <<<"$exported"); do
    printf 'error: the module exports %s\n' "$name" >&2
    problems=1
  done
  # The part of the application's base that lives in the framework.
  for name in _ZN13BasicMultiApp{C2Ev,10InitializeE,7RunningEv,7CleanupEv,15CreateConfigureEv,15SummarizeResultE} \
    _ZNK13BasicMultiApp20InheritParentContextE; do
    grep -q "^$name" <<<"$imported" || { printf 'error: the module does not import %s\n' "$name" >&2; problems=1; }
  done
  [ "$problems" -eq 0 ] || die 'the import and export tables are not as they must be'
}

make_zip() {
  local bin=$1 version name stage file
  version=$(sed -nE 's/^project\(korvan VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
  name=korvan-$version-windows-x64
  stage=$root/build/windows-zip/$name
  rm -rf "$root/build/windows-zip"
  mkdir -p "$stage" dist
  for file in korvan.exe korvan_simulator.exe korvan_framework.dll korvan_update_multicompare.dll; do
    x86_64-w64-mingw32-strip -o "$stage/$file" "$bin/$file"
  done
  check_files "$stage"
  cp "$bin"/*_systems_list.txt "$bin/global.config" README.md CHANGELOG.md SECURITY.md "$stage"
  cp -r docs samples "$stage"
  cp -r "$KORVAN_WINDOWS_PREFIX/licences" "$stage"
  rm -f "dist/$name.zip"
  (cd "$root/build/windows-zip" && zip -q -r -X "$root/dist/$name.zip" "$name")
  say "dist/$name.zip: $(du -h "dist/$name.zip" | cut -f1)"
}

packages=("${windows_packages[@]}")
install_packages
cd "$root"
windows_dependencies
build mingw "$@"
make_zip "$root/build/mingw/bin"
