# Sourced by ./scan and ./check: makes sure that what the build needs is installed. The caller sets `root`.
# shellcheck shell=bash disable=SC2034,SC2154

# What is needed to build and run the programs, and what the tests need in addition (Debian's package names).
build_packages="cmake g++ make zlib1g-dev libicu-dev libcli11-dev nlohmann-json3-dev libsqlite3-dev libsodium-dev procps python3"
test_packages="git clang clang-format clang-tidy libclang-rt-14-dev libgtest-dev libgmock-dev util-linux sqlite3 jq strace valgrind zsh fish mandoc openssh-client dpkg-dev fakeroot lintian rpm shellcheck ansible-core rsync postgresql"
bench_packages="libbenchmark-dev libexpat1-dev util-linux"

# install_packages NAME...: installs those that are missing, and prints nothing if there are none.
install_packages() {
  if [ "$(uname)" = Darwin ]; then
    require_on_mac "$@"
    return
  fi
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  local as_root=()
  [ "$(id -u)" = 0 ] || as_root=(sudo)
  echo "Installing ${missing[*]}" >&2
  "${as_root[@]}" apt-get update -q >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}" >&2
}

# install_npm_packages FOLDER...: installs what each folder's package-lock.json lists, with Node.js and a browser to run it in.
install_npm_packages() {
  [ "$(uname)" != Darwin ] || return 0
  # Node.js from other sources includes npm, so check for the commands, not the packages.
  local missing=() folder
  command -v node >/dev/null || missing+=(nodejs)
  command -v npm >/dev/null || missing+=(npm)
  command -v chromium >/dev/null || missing+=(chromium)
  [ ${#missing[@]} -eq 0 ] || install_packages "${missing[@]}"
  for folder in "$@"; do
    [ "$folder/node_modules/.package-lock.json" -nt "$folder/package-lock.json" ] ||
      (cd "$folder" && npm ci --silent --no-audit --no-fund) >&2
  done
}

# require_on_mac NAME...: ends with one line if something is missing that the build needs and macOS does not include.
require_on_mac() {
  local package missing advice=""
  for package in "$@"; do
    missing=$(missing_on_mac "$package")
    [ -z "$missing" ] || advice="${advice:+$advice and }$missing"
  done
  [ -z "$advice" ] || { echo "Please install $advice" >&2; exit 1; }
}

# missing_on_mac NAME: what to install on a Mac for one of Debian's packages; nothing if it is there.
missing_on_mac() {
  case $1 in
    g++) xcode-select -p >/dev/null 2>&1 || echo "the command line tools (xcode-select --install)" ;;
    cmake) command -v cmake >/dev/null || echo "cmake (https://cmake.org or your package manager)" ;;
    libbenchmark-dev) has_library benchmark || echo "benchmark (Homebrew: google-benchmark)" ;;
  esac
}

# has_library NAME: whether CMake finds a library where Homebrew puts it, or on CMAKE_PREFIX_PATH.
has_library() {
  local prefix prefixes
  IFS=: read -ra prefixes <<<"${CMAKE_PREFIX_PATH:-}:/opt/homebrew:/usr/local"
  for prefix in "${prefixes[@]}"; do
    [ ! -d "$prefix/lib/cmake/$1" ] || return 0
  done
  return 1
}

# can_fuzz: whether clang includes libFuzzer; Apple's does not.
can_fuzz() {
  mkdir -p "$root/build"
  echo 'extern "C" int LLVMFuzzerTestOneInput(const unsigned char*, unsigned long) { return 0; }' |
    clang++ -fsanitize=fuzzer -x c++ -o "$root/build/can_fuzz" - 2>/dev/null
}

# build_preset PRESET: configures and builds; the tools' output is shown only if they fail. A failed configuration leaves its cache but no
# build files, and is repeated.
build_preset() {
  local log=$root/build/$1.log jobs
  jobs=$(getconf _NPROCESSORS_ONLN)
  mkdir -p "$root/build"
  (
    cd "$root"
    { [ -f "build/$1/Makefile" ] || [ -f "build/$1/build.ninja" ] || cmake --preset "$1"; } &&
      cmake --build --preset "$1" -j "$jobs"
  ) >"$log" 2>&1 || { cat "$log" >&2; return 1; }
}
