# Installs the Debian packages that a script needs: as root, through sudo, or by telling the line to run.
# Sourced by the other scripts; expects `set -eu`.

# need_packages PACKAGE...: all of them are installed when this returns.
need_packages() {
    if ! command -v dpkg-query >/dev/null 2>&1; then
        echo "$0: this is no Debian system; make sure that the equivalents of these packages are there: $*" >&2
        return 0
    fi
    missing=""
    for package in "$@"; do
        status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
        [ "$status" = "install ok installed" ] || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    install="apt-get update && apt-get install -y --no-install-recommends$missing"
    if [ "$(id -u)" = 0 ]; then
        as_root=""
    elif command -v sudo >/dev/null 2>&1; then
        as_root="sudo"
    else
        echo "$0: some packages are missing. Run this as root, then call me again:" >&2
        echo "    $install" >&2
        exit 2
    fi
    echo "Installing:$missing" >&2
    $as_root env DEBIAN_FRONTEND=noninteractive sh -c "$install" >&2
}

build_packages="g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libpugixml-dev libpng-dev libpcap-dev libfec-dev zlib1g-dev"
# Tests run the completion and format the manual; without bash and man they would be skipped.
test_packages="libgtest-dev libgmock-dev bash man-db tzdata"
bench_packages="libbenchmark-dev"
count_packages="valgrind"
install_packages="make pkg-config binutils"
# The second compiler, with its sanitizers.
clang_packages="clang libclang-rt-14-dev"
# 32-bit ARM: the cross compiler, the emulator, GoogleTest's sources.
armhf_packages="g++-arm-linux-gnueabihf qemu-user googletest"
format_packages="clang-format-14"
docs_packages="doxygen python3 git"
abi_packages="binutils abigail-tools"
page_packages="chromium fonts-dejavu-core python3"
package_packages="build-essential debhelper dpkg-dev git lintian"
