#!/usr/bin/env bash
# Builds the Debian package in build-package/ (programs only: no tests, no benchmarks), installs
# it with apt-get, runs the installed vellum-cli on tests/data/features.mdb, checks the
# installed desktop files (AppStream metainfo validated, manual page found), and removes the
# package again. Needs root (or sudo) for apt-get.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi

cmake -S . -B build-package -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVELLUM_BUILD_TESTS=OFF \
  -DVELLUM_BUILD_BENCH=OFF "${launcher[@]}" ${VELLUM_CMAKE_ARGS:-} >/dev/null
cmake --build build-package -j"$(nproc)"
rm -f build-package/vellum_*.deb
(cd build-package && cpack -G DEB >/dev/null)
deb=$(ls build-package/vellum_*.deb)
echo "test-package: built $deb"
dpkg-deb --field "$deb" Package Version Architecture Depends

installed=0
cleanup() {
  if [ "$installed" -eq 1 ]; then
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get remove -y -qq vellum >/dev/null
  fi
}
trap cleanup EXIT
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "$root/$deb" >/dev/null
installed=1

fail() { echo "test-package: $*" >&2; exit 1; }
[ -x /usr/bin/vellum-cli ] || fail "/usr/bin/vellum-cli is not installed"
version=$(/usr/bin/vellum-cli --version)
[ "$version" = "vellum-cli $(dpkg-deb --field "$deb" Version)" ] || fail "unexpected version: $version"
listed=$(cd / && /usr/bin/vellum-cli list "$root/tests/data/features.mdb")
expected=$(printf 'Customers\t3')
grep -qxF "$expected" <<<"$listed" || fail "vellum-cli list did not list Customers with 3 rows: $listed"
for file in /usr/bin/vellum /usr/bin/vellum-loader /usr/share/applications/vellum.desktop \
  /usr/share/mime/packages/vellum.xml /usr/share/icons/hicolor/scalable/apps/vellum.svg \
  /usr/share/metainfo/io.github.vellum.Vellum.metainfo.xml; do
  [ -e "$file" ] || fail "$file is not installed"
done
[ -e "$(readlink -f /usr/lib/vellum/libsqlcipher.so)" ] || fail "/usr/lib/vellum/libsqlcipher.so does not lead to a library"
ls /usr/share/man/man1/vellum-cli.1* >/dev/null 2>&1 || fail "the manual page of vellum-cli is not installed"
if command -v appstreamcli >/dev/null; then
  appstreamcli validate --no-net /usr/share/metainfo/io.github.vellum.Vellum.metainfo.xml >/dev/null ||
    fail "the metainfo file does not validate"
fi
if command -v desktop-file-validate >/dev/null; then
  desktop-file-validate /usr/share/applications/vellum.desktop || fail "the desktop entry does not validate"
fi
echo "test-package: $version installed, ran and checked"
