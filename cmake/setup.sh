# SPDX-License-Identifier: BSD-3-Clause
# What ./demo, ./check and .ci/run share: installing what is missing on Debian 12, configuring and building. Sourced.

set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=${KERRIN_JOBS:-$(nproc)}

say() { printf '== %s\n' "$*"; }

packages=(
  g++ cmake ninja-build ccache mold pkg-config
  libtbb-dev libepoxy-dev libegl-dev libegl-mesa0 libgl1-mesa-dri libglm-dev libpng-dev
  libvtk9-dev libgtest-dev libbenchmark-dev nlohmann-json3-dev
)

# Installs the packages that are missing; touches neither the network nor apt when there are none.
install_missing() {
  local missing=() package
  for package in "${packages[@]}"; do
    dpkg-query -W -f '${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  if ((${#missing[@]} == 0)); then
    say 'all packages are installed'
    return
  fi
  say "installing: ${missing[*]}"
  local as_root=()
  ((EUID == 0)) || as_root=(sudo)
  "${as_root[@]}" apt-get -qq update
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o Dpkg::Use-Pty=0 install -y \
    --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [TARGET...]: configures build/PRESET once and builds the targets (all of them without a name).
build() {
  local preset=$1
  shift
  cd "$root"
  if [[ ! -f build/$preset/build.ninja ]]; then
    say "configuring build/$preset"
    mkdir -p "build/$preset"
    cmake --preset "$preset" >"build/$preset/configure.log" 2>&1 || { cat "build/$preset/configure.log"; exit 1; }
  fi
  say "building $preset ${*:-everything}"
  cmake --build "build/$preset" -j "$jobs" ${1:+--target "$@"}
}
