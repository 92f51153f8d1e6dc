#!/usr/bin/env bash
# Brings a Debian 12 machine to the point where the program stands in build/: installs the packages that are missing,
# configures the build and builds. Does only what is not done yet, and says only what somebody must know.
#
#   tools/setup.sh [--PRESET] [TARGET...]     builds these targets; all of them when none is named
#   tools/setup.sh --package                  builds nothing, and installs what tools/package needs besides
#   tools/setup.sh --browsers                 the same for tests/web/walks.py
#
# Without a preset it is the build that the tests run, in build/. With --clang, --coverage, --fuzz, --sanitize, --thread,
# --web or --web-unwinding it is that preset of CMakePresets.json, in build-clang/ and so on. With --valgrind it is the build of the tests, for
# valgrind.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
top=$PWD

packages=(
  g++ cmake ninja-build python3 musl-dev
  qt6-base-dev qt6-svg-dev libfreexl-dev libzip-dev libexpat1-dev libcli11-dev nlohmann-json3-dev libfmt-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth jwm fonts-dejavu-core parallel
)
preset=dev
folder=build
case ${1:-} in
  --clang) packages+=(clang) ;;
  --coverage) packages+=(gcovr) ;;
  --fuzz) packages+=(clang libclang-rt-dev) ;;
  --sanitize | --thread) ;;
  --valgrind) packages+=(valgrind) ;;
  --web | --web-unwinding)
    packages+=(emscripten nodejs dpkg-dev)
    export NODE_PATH=/usr/share/nodejs # where the distribution keeps what emscripten needs of node, whoever node is from
    ! command -v ccache >/dev/null || export EM_COMPILER_WRAPPER=ccache
    ;;
  --browsers) packages+=(chromium chromium-driver firefox-esr webkit2gtk-driver) ;;
  --package) packages+=(git debhelper dpkg-dev fakeroot lintian appstream desktop-file-utils mmdebstrap) ;;
  --*)
    echo "tools/setup.sh knows no $1." >&2
    exit 2
    ;;
esac
if [[ ${1:-} == --valgrind ]]; then
  shift
elif [[ ${1:-} == --* && $1 != --package && $1 != --browsers ]]; then
  preset=${1#--}
  folder=build-$preset
  shift
fi

is_installed() {
  [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

# The packages could not be installed from here: say what is lacking and how to get it.
tell_lacking() {
  {
    echo "These packages are needed to build Merlane and could not be installed: $1"
    echo "Please run this as an administrator, or ask yours to, and start again:"
    echo "    apt-get update && apt-get install --no-install-recommends $1"
  } >&2
  exit 1
}

install_missing() {
  local missing=() package
  for package in "${packages[@]}"; do
    is_installed "$package" || missing+=("$package")
  done
  ((${#missing[@]} > 0)) || return 0

  local as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null || tell_lacking "${missing[*]}"
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  if ! { "${as_root[@]}" apt-get update -qq &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -qq -y --no-install-recommends "${missing[@]}"; } >/dev/null; then
    tell_lacking "${missing[*]}"
  fi
}

# Runs a step of the build with its output kept aside, which is shown only if the step fails.
step() {
  local log=$top/$folder/setup.log
  if ! "$@" >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    echo "The build failed at: $*   (all of its output: $log)" >&2
    exit 1
  fi
}

# The sources of the libraries that are compiled for browsers, as the distribution has them; lists of its own, so that
# nothing of the system changes.
get_sources() {
  local sources=$top/build-web/sources
  [[ ! -f $sources/complete ]] || return 0
  echo "Getting the sources of the libraries"
  rm -rf "$sources"
  mkdir -p "$sources/apt/lists/partial" "$sources/apt/cache"
  cat >"$sources/apt/debian.sources" <<SOURCES
Types: deb-src
URIs: http://deb.debian.org/debian
Suites: bookworm
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
SOURCES
  local settings=(-qq -o "Dir::Etc::SourceList=$sources/apt/debian.sources" -o Dir::Etc::SourceParts=/dev/null
    -o "Dir::State::Lists=$sources/apt/lists" -o "Dir::Cache=$sources/apt/cache" -o Debug::NoLocking=1)
  ((EUID != 0)) || settings+=(-o APT::Sandbox::User=root)
  step apt-get "${settings[@]}" update
  (cd "$sources" && step apt-get "${settings[@]}" source zlib libzip expat freexl)
  touch "$sources/complete"
}

build() {
  mkdir -p "$folder"
  [[ $preset != web* ]] || get_sources
  if ! grep -qsFx "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt"; then
    step cmake --preset "$preset" --fresh # new, or made where this folder stood before
  elif [[ ! -f $folder/build.ninja ]]; then
    step cmake --preset "$preset"
  fi
  [[ -x $folder/merlane-batch ]] || echo "Building Merlane; the first time takes some minutes."
  step cmake --build "$folder" --target "$@"
}

if command -v dpkg-query >/dev/null; then
  install_missing
else
  echo "This is no Debian system; the build will work if these are installed under other names: ${packages[*]}" >&2
fi
[[ ${1:-} != --package && ${1:-} != --browsers ]] || exit 0
(($# > 0)) || set -- all
build "$@"
