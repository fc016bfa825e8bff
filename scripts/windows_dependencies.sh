# The libraries of the Windows build, cross-built once with MinGW-w64 into a prefix below build/windows-deps; sourced after
# lib.sh, not run. What is compiled comes from the distribution's source packages, in pinned versions and with pinned
# checksums; what is headers alone comes from its binary packages.

windows_packages=(
  g++ g++-mingw-w64-x86-64-posix cmake ninja-build make perl patch dpkg-dev zip xz-utils binutils-mingw-w64-x86-64
  libboost1.74-dev nlohmann-json3-dev libcli11-dev libspdlog-dev libfmt-dev
)

# "package version file..." of the source packages; their files' SHA-256 sums follow below.
windows_sources=(
  'zlib 1:1.2.13.dfsg-1'
  'openssl 3.0.20-1~deb12u2'
  'curl 7.88.1-10+deb12u15'
  'pugixml 1.13-0.2'
  'boost1.74 1.74.0+ds1-21'
  'googletest 1.12.1-0.2'
)
windows_checksums='
71feb7947e3c00ef125f83b79a4e529bde31171e5babe48b391f06758d1ab0a1  zlib_1.2.13.dfsg.orig.tar.bz2
f66cf3d4f2d7defcd4d1fd1fb0a11ee39f1e01b42ec7d059c9dc5c1695133c44  zlib_1.2.13.dfsg-1.debian.tar.xz
c80a01dfc70ece4dc21168932c37739042d404d46ccc81a5986dd75314ecda6f  openssl_3.0.20.orig.tar.gz
7279efe85c359500c95aa88347e3395dd303d7566e2bb818d80d96e0c3bb9629  openssl_3.0.20-1~deb12u2.debian.tar.xz
cdb38b72e36bc5d33d5b8810f8018ece1baa29a8f215b4495e495ded82bbf3c7  curl_7.88.1.orig.tar.gz
961b78bc48492c5693e4decb352ddd176f343260a8956f48b2887874048ef23b  curl_7.88.1-10+deb12u15.debian.tar.xz
5c5ad5d7caeb791420408042a7d88c2c6180781bf218feca259fd9d840a888e1  pugixml_1.13.orig.tar.gz
15ad5e40790d0155f6d4d55b7dd382974264d04e328de800a65e9fa5d5e8fb5d  pugixml_1.13-0.2.debian.tar.xz
192f5df504d282cb81288f88232d8af45b64a9ab531e1c7cf8ae955f16f6bb28  boost1.74_1.74.0+ds1.orig.tar.xz
6549dab4824c781e0510272ac352f9e0367d4d47c16c94989e5ec7447fd8f0d8  boost1.74_1.74.0+ds1-21.debian.tar.xz
81964fe578e9bd7c94dfdb09c8e4d6e6759e19967e397dbea48d1c10e45d0df2  googletest_1.12.1.orig.tar.gz
03dca2d4c5d2add5afcca67a09c5664b04998ef2063b6bec0cb84563e6eef422  googletest_1.12.1-0.2.debian.tar.xz
'

# Raised when the way of building changes.
windows_recipe=2

windows_deps=$root/build/windows-deps
windows_key=$(printf '%s\n' "$windows_recipe" "${windows_sources[@]}" "$windows_checksums" | sha256sum | cut -c1-16)
windows_prefix=$windows_deps/$windows_key

# apt with the source packages of the configured archives, in a state of its own: the system's settings stay as they are.
windows_apt() {
  local tool=$1
  shift
  "$tool" -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$windows_deps/apt/sources" \
    -o Dir::State::lists="$windows_deps/apt/lists" -o APT::Sandbox::User=root -o APT::Get::List-Cleanup=0 "$@"
}

windows_source_lists() {
  local target=$windows_deps/apt/sources file
  rm -rf "$target"
  mkdir -p "$target" "$windows_deps/apt/lists/partial"
  for file in /etc/apt/sources.list.d/debian.sources; do
    [ -r "$file" ] && sed -E 's/^Types:.*/Types: deb-src/' "$file" >"$target/$(basename "$file")"
  done
  if [ -s /etc/apt/sources.list ]; then
    sed -nE 's/^deb(-src)?[[:space:]]/deb-src /p' /etc/apt/sources.list | sort -u >"$target/main.list"
  fi
  [ -n "$(ls -A "$target")" ] || die "no archive is configured in /etc/apt/sources.list or debian.sources"
}

# Fetches and unpacks the source packages into build/windows-deps/source.
windows_fetch() {
  local source=$windows_deps/source entry name version
  rm -rf "$source"
  mkdir -p "$source" "$windows_deps/archives"
  cd "$windows_deps/archives"
  if ! sha256sum --check --status <<<"${windows_checksums#$'\n'}" 2>/dev/null; then
    windows_source_lists
    say "fetching the sources of the libraries"
    windows_apt apt-get update -qq || die "apt-get update failed; look at the network and /etc/apt/sources.list"
    for entry in "${windows_sources[@]}"; do
      read -r name version <<<"$entry"
      windows_apt apt-get source -qq --download-only --only-source "$name=$version" >/dev/null ||
        die "the source package $name $version is not to be had; when the distribution has replaced it, set the new \
version and its checksums in scripts/windows_dependencies.sh"
    done
  fi
  sha256sum --check --quiet <<<"${windows_checksums#$'\n'}" || die "a source archive does not have its pinned checksum"
  for entry in "${windows_sources[@]}"; do
    read -r name version <<<"$entry"
    windows_unpack "$name" "${version#*:}"
  done
}

# Unpacks the upstream archive and lays the distribution's patches over it. Of Boost only what is compiled.
windows_unpack() {
  local name=$1 version=$2 upstream=${2%-*} archive folder
  folder=$windows_deps/source/$name
  mkdir -p "$folder"
  archive=$(ls "$windows_deps/archives/${name}_$upstream".orig.tar.*z* | grep -v '\.asc$')
  if [ "$name" = boost1.74 ]; then
    tar -C "$folder" --strip-components=1 --wildcards -xf "$archive" '*/libs/filesystem/src' '*/libs/regex/src' \
      '*/boost/filesystem*' '*/boost/regex*'
    return
  fi
  tar -C "$folder" --strip-components=1 -xf "$archive"
  tar -C "$folder" -xf "$windows_deps/archives/${name}_$version.debian.tar.xz"
  local patch
  [ -s "$folder/debian/patches/series" ] || return 0
  while read -r patch _; do
    case $patch in '' | '#'*) continue ;; esac
    patch -d "$folder" -p1 --quiet --no-backup-if-mismatch <"$folder/debian/patches/$patch" ||
      die "$name: the patch $patch does not apply"
  done <"$folder/debian/patches/series"
}

windows_cmake() {
  local name=$1 folder=$2
  shift 2
  local launcher=()
  command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
  say "building $name for Windows"
  {
    cmake -G Ninja -S "$folder" -B "$windows_deps/build/$name" -DCMAKE_BUILD_TYPE=Release \
      -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-toolchain.cmake" -DKORVAN_WINDOWS_PREFIX="$windows_building" \
      -DCMAKE_INSTALL_PREFIX="$windows_building" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF "${launcher[@]}" "$@" &&
      cmake --build "$windows_deps/build/$name" && cmake --install "$windows_deps/build/$name"
  } >"$windows_deps/$name.log" 2>&1 || { tail -40 "$windows_deps/$name.log" >&2; die "$name could not be built"; }
}

# No configuration file, engine or provider is loaded from a folder at run time.
windows_openssl() {
  say 'building openssl for Windows'
  local compiler=x86_64-w64-mingw32-gcc-posix
  command -v ccache >/dev/null && compiler="ccache $compiler"
  mkdir -p "$windows_deps/build/openssl"
  (
    cd "$windows_deps/build/openssl" &&
      "$windows_deps/source/openssl/Configure" mingw64 --libdir=lib --prefix="$windows_building" \
        --openssldir='C:/Program Files/Common Files/SSL' \
        no-shared no-module no-engine no-autoload-config no-legacy no-tests \
        CC="$compiler" AR=x86_64-w64-mingw32-ar RANLIB=x86_64-w64-mingw32-ranlib RC=x86_64-w64-mingw32-windres &&
      make -s -j "$(nproc)" build_libs && make -s install_dev
  ) >"$windows_deps/openssl.log" 2>&1 || { tail -40 "$windows_deps/openssl.log" >&2; die 'openssl could not be built'; }
}

# Headers of the system's include folder must not be seen as a whole by the cross-compiler, so the wanted ones are copied.
windows_headers() {
  local folder
  for folder in boost nlohmann CLI spdlog fmt; do
    cp -rL "/usr/include/$folder" "$windows_building/include/"
  done
  cp -r "$root/cmake/windows_packages/." "$windows_building/lib/cmake/"
}

# What the libraries' licences want to travel with the programs.
windows_licences() {
  local target=$windows_building/licences entry name version package
  mkdir -p "$target"
  for entry in "${windows_sources[@]}"; do
    read -r name version <<<"$entry"
    tar -xOf "$windows_deps/archives/${name}_${version#*:}.debian.tar.xz" debian/copyright >"$target/$name"
  done
  rm "$target/googletest"
  for package in nlohmann-json3-dev libcli11-dev libspdlog-dev libfmt-dev g++-mingw-w64-x86-64-posix mingw-w64-common; do
    cp "/usr/share/doc/$package/copyright" "$target/$package"
  done
}

windows_build() {
  windows_building=$windows_prefix.part
  rm -rf "$windows_building" "$windows_deps/build"
  mkdir -p "$windows_building/include" "$windows_building/lib/cmake"
  windows_headers
  local source=$windows_deps/source
  windows_licences
  windows_cmake boost-zlib "$root/cmake/windows_libraries" -DKORVAN_SOURCES="$source"
  windows_cmake pugixml "$source/pugixml"
  windows_cmake googletest "$source/googletest"
  windows_openssl
  windows_cmake curl "$source/curl" -DCURL_USE_OPENSSL=ON -DCURL_USE_SCHANNEL=OFF -DBUILD_CURL_EXE=OFF -DHTTP_ONLY=ON \
    -DCURL_CA_BUNDLE=none -DCURL_CA_PATH=none -DCURL_USE_LIBSSH2=OFF -DCURL_USE_LIBPSL=OFF -DUSE_LIBIDN2=OFF \
    -DCURL_BROTLI=OFF -DCURL_ZSTD=OFF -DUSE_NGHTTP2=OFF -DENABLE_MANUAL=OFF -DBUILD_TESTING=OFF -DENABLE_UNICODE=ON \
    -DCURL_DISABLE_LDAP=ON -DCURL_DISABLE_LDAPS=ON
  mv "$windows_building" "$windows_prefix"
  find "$windows_deps" -maxdepth 1 -type d -name '????????????????' ! -path "$windows_prefix" -exec rm -rf {} +
}

# Makes the prefix when it is not there, and names it in KORVAN_WINDOWS_PREFIX.
windows_dependencies() {
  export KORVAN_WINDOWS_PREFIX=$windows_prefix
  if [ ! -d "$windows_prefix" ]; then
    (
      set -euo pipefail
      windows_fetch
      windows_build
    )
    rm -rf "$windows_deps/source" "$windows_deps/build"
    # A build folder of earlier libraries remembers where those were.
    rm -rf "$root/build/mingw/CMakeCache.txt" "$root/build/mingw/CMakeFiles"
  fi
}
