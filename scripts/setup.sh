# Sourced by ./run, ./test and the CI: installs the Debian packages of a list that are missing. Quick when none is.
# What was installed may let more be built, so that the next build is configured anew.
install_missing() {
  local missing=() package
  for package in $(grep -hv '^#' "$@"); do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  if [ "${#missing[@]}" -eq 0 ]; then return 0; fi
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing: ${missing[*]}" >&2
      echo "Install them as root (apt-get install ${missing[*]}) and start again." >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]}"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
  configure_anew=yes
}

# configure_and_build PRESET [TARGET...]: in the folder of the project.
configure_and_build() {
  local preset=$1
  shift
  if [ ! -f "build/$preset/build.ninja" ] || [ -n "${configure_anew:-}" ]; then cmake --preset "$preset" >"/tmp/orvvalis-configure-$$.log" 2>&1 || {
    cat "/tmp/orvvalis-configure-$$.log" >&2
    return 1
  }; fi
  rm -f "/tmp/orvvalis-configure-$$.log"
  cmake --build --preset "$preset" ${1:+--target "$@"} -- --quiet | { grep -v '^ninja: no work to do.$' || true; }
}
