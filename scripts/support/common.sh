# Shared by the scripts a person runs: messages, packages, builds. Sourced by bash, never run.

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
STARTED=$SECONDS

say() { printf '%s\n' "-- $*"; }
die() {
  printf '%s\n' "FAILED: $*" >&2
  exit 1
}
finish() { printf '%s\n' "OK: $* ($((SECONDS - STARTED)) s)"; }

# install_packages [NAME ...]: what packages.txt lists and the machine lacks, and the packages named here.
install_packages() {
  local wanted missing=() package
  wanted=$(sed -e 's/#.*//' "$ROOT/scripts/support/packages.txt" | tr -s '[:space:]' '\n')
  for package in $wanted "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  if [ ${#missing[@]} -eq 0 ]; then
    return
  fi
  command -v apt-get >/dev/null || die "this machine lacks ${missing[*]}, and has no apt-get to install them with"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || die "install these packages as root first: ${missing[*]}"
    as_root=(sudo)
  fi
  say "installing ${#missing[@]} packages: ${missing[*]}"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq || die "the package lists could not be updated"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
    >/dev/null || die "the packages could not be installed: ${missing[*]}"
}

# configure PRESET: makes build/PRESET ready to be built.
configure() {
  local preset=$1 log=$ROOT/build-$1.log
  say "configuring build/$preset"
  (cd "$ROOT" && cmake --preset "$preset" >"$log" 2>&1) || {
    cat "$log" >&2
    rm -f "$log"
    die "the build could not be configured"
  }
  rm -f "$log"
}

# build PRESET [TARGET ...]: builds what is configured in build/PRESET, all of it when no target is named.
build() {
  local preset=$1
  shift
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  say "building build/$preset"
  NINJA_STATUS='   [%f/%t, %e s] ' cmake --build "$ROOT/build/$preset" "${targets[@]}" || die "the build is broken"
}
