# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034
# What scripts/demo, scripts/test and .ci/run share. Sourced from the repository's root folder.

# Debian packages by purpose; a command asks for the ones it uses. zlib is here because the CMake
# package of assimp names it while its Debian package does not depend on it.
packages_build=(ninja-build qtbase5-dev libqt5opengl5-dev libglu1-mesa-dev libassimp-dev
                zlib1g-dev libcsv-dev libmeshoptimizer-dev libseccomp-dev libeigen3-dev
                libstb-dev)
# A compiler or a CMake that came from elsewhere than Debian's packages serves as well.
command -v c++ >/dev/null || packages_build+=(g++)
command -v cmake >/dev/null || packages_build+=(cmake)
packages_screen=(xvfb libgl1-mesa-dri util-linux)
packages_models=(assimp-testmodels)
packages_test=(libgtest-dev xdotool openbox ffmpeg pkg-config
               python3-pyqt5 python3-pyqt5.qtopengl python3-opengl)
packages_format=(git clang-format-14)
packages_analyse=(cppcheck clang-tidy-14)
packages_docs=(doxygen)
packages_load=(stress-ng)
packages_compare=(libqglviewer-dev-qt5 libvtk9-dev libvtk9-qt-dev libopenscenegraph-dev libcoin-dev
                  python3-pyqt5 python3-pyqt5.qtopengl python3-opengl python3-pyqtgraph)

say() { printf '== %s\n' "$*"; }

# fail MESSAGE...: one line per argument on standard error, then the end.
fail() {
    printf 'error: %s\n' "$1" >&2
    shift
    [ $# -eq 0 ] || printf '       %s\n' "$@" >&2
    exit 1
}

# Prints those of the named packages that are not installed, one per line.
missing_packages() {
    local package
    for package in "$@"; do
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            printf '%s\n' "$package"
    done
}

# as_root COMMAND...: runs it directly as root, else through sudo.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# require PACKAGE...: installs what is missing and touches nothing when all is there.
require() {
    command -v dpkg-query >/dev/null ||
        fail 'this script installs Debian packages, and dpkg-query is not here.' \
             "Install by hand what these packages hold, then build with CMake: $*"
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null ||
        fail 'packages are missing, and there is no sudo to install them. As root, run:' \
             "apt-get install ${missing[*]}"
    say "installing: ${missing[*]}"
    # A source that cannot be reached need not hold any of these packages: the installation decides.
    as_root apt-get update </dev/null || say 'some package lists were not updated'
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}" </dev/null ||
        fail 'apt-get could not install the packages above.'
}

# build PRESET [TARGET...]: configures and builds all or the targets, with ccache where it is installed.
build() {
    local options=() preset=$1
    shift
    if command -v ccache >/dev/null; then
        options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    say "configuring build/$preset"
    cmake --preset "$preset" "${options[@]}" </dev/null
    say "building build/$preset"
    cmake --build "build/$preset" ${1:+--target "$@"} </dev/null
}

# run_tests PRESET [OPTION...]: runs what was built, one program more at a time than there are
# processors, since each waits at times. Each test of a window starts an X server of its own. Fails
# if there was no test.
run_tests() {
    local preset=$1
    shift
    ctest --preset "$preset" --no-tests=error -j "$(($(nproc) + 1))" "$@" </dev/null
}
