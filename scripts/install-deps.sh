#!/usr/bin/env bash
# Installs the Debian packages that VELDA needs to build, test and run.
# Idempotent: when everything is present it only checks and returns.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  unixodbc unixodbc-dev
  libsqliteodbc sqlite3
  postgresql odbc-postgresql
  flex bison
  qt6-base-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libxml2-utils
  clang libclang-rt-dev clang-format python3 lcov
  xdg-utils desktop-file-utils shared-mime-info man-db
  xvfb openbox x11-utils imagemagick fonts-dejavu-core
  r-base-core python3-pandas
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$p")
done

[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "install-deps: installing ${missing[*]}"
sudo=""
[[ $(id -u) -eq 0 ]] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
