# What the scripts ask of the machine; sourced by run and test.
# need PACKAGE PROBE ...: installs those of Debian's packages whose probe finds nothing. A probe is
# a command's name or a path, in which * stands for any run of characters.

is_there () {
  case $1 in
    /*) compgen -G "$1" >/dev/null ;;
    *) command -v "$1" >/dev/null ;;
  esac
}

need () {
  local missing=()
  while (($# > 1)); do
    is_there "$2" || missing+=("$1")
    shift 2
  done
  ((${#missing[@]})) || return 0
  if ! command -v apt-get >/dev/null; then
    echo "error: these Debian packages are needed, and there is no apt-get: ${missing[*]}" >&2
    return 1
  fi
  local as_root=()
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "error: to install ${missing[*]} run this as root, or install sudo" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "installing ${missing[*]}" >&2
  "${as_root[@]}" apt-get -q -o Acquire::Retries=3 update >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Acquire::Retries=3 \
    install --no-install-recommends "${missing[@]}" >&2
}

need_to_build () {
  need g++ g++ cmake cmake ninja-build ninja ccache ccache \
    libcli11-dev '/usr/include/CLI/CLI.hpp' nlohmann-json3-dev '/usr/include/nlohmann/json.hpp'
}

need_to_test () {
  need_to_build
  need libgtest-dev '/usr/lib/*/libgtest.a' bats bats jq jq libxml2-utils xmllint binutils nm
}
