#!/usr/bin/env bash
# Installs the Debian packages that building and testing Vellum need, when they are missing.
# Safe to run again: packages already present are left alone.
set -euo pipefail

packages=(
  build-essential cmake pkg-config git
  mdbtools mdbtools-dev libglib2.0-dev libicu-dev zlib1g-dev
  libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev
  qt6-base-dev qt6-base-dev-tools libqt6svg6-dev qt6-image-formats-plugins libgl1-mesa-dev
  libsqlcipher0 sqlcipher sqlite3
  libxlsxwriter-dev libssl-dev python3 python3-xlrd python3-openpyxl
  xvfb xauth
  appstream
  clang clang-format libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#packages[@]} packages are installed"
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
echo "install-deps: done"
