# Shared by the scripts in this folder; sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What the build, the tests and the demo need, by the distribution's names.
packages=(
  g++ cmake ninja-build
  libboost-dev libboost-filesystem-dev libboost-regex-dev
  libcurl4-openssl-dev libssl-dev zlib1g-dev
  nlohmann-json3-dev libcli11-dev libspdlog-dev libpugixml-dev
  libgtest-dev libgmock-dev libxml2-utils binutils
  ipmitool openipmi
)

say() { printf '== %s\n' "$*"; }
die() { printf 'error: %s\n' "$*" >&2; exit 1; }

# Installs the packages that are missing: as root, or through sudo. Where neither works, says the line to run.
install_packages() {
  local missing=() name
  for name in "${packages[@]}"; do
    dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null | grep -qx installed || missing+=("$name")
  done
  [ "${#missing[@]}" -eq 0 ] && return 0
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && { sudo -n true 2>/dev/null || { [ -t 0 ] && sudo -v; }; }; then
      as_root=(sudo)
    else
      printf 'Packages are missing and cannot be installed from here. As root, run:\n' >&2
      printf '  apt-get update && apt-get install -y --no-install-recommends %s\n' "${missing[*]}" >&2
      die "${#missing[@]} packages are missing"
    fi
  fi
  say "installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq || die "apt-get update failed; look at the network and /etc/apt/sources.list"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
    die "apt-get could not install: ${missing[*]}"
}

# build PRESET [cmake option...]
build() {
  local preset=$1
  shift
  cd "$root"
  local launcher=()
  command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  say "building the $preset preset"
  cmake --preset "$preset" "${launcher[@]}" "$@" >"$root/build-$preset.log" 2>&1 ||
    { cat "$root/build-$preset.log" >&2; rm -f "$root/build-$preset.log"; die "cmake failed"; }
  rm -f "$root/build-$preset.log"
  cmake --build --preset "$preset"
}
