# shellcheck shell=bash disable=SC2034
# Shared by ./run, ./test and ./bench: gets a Debian 12 machine ready and builds. To be sourced in the root of the
# checkout.

# The desk tests import Debian's Python packages, which another Python on the path would lack.
PYTHON=/usr/bin/python3

# Includes what these programs need at run time, and packages that are only recommended by others.
PACKAGES=(
    ca-certificates git procps cmake ninja-build g++ clang libclang-rt-dev clang-format clang-tidy googletest
    g++-mingw-w64-x86-64-win32 g++-mingw-w64-i686-win32
    wine64 xvfb openbox trayer xdotool x11-utils x11-xserver-utils imagemagick
    fonts-dejavu-core fonts-liberation fonts-wqy-microhei locales faketime pulseaudio pulseaudio-utils
    python3 python3-pytest python3-pil python3-xlib
    nsis zip openssl osslsigncode debootstrap
)
LOCALES=(de_DE it_IT ja_JP pl_PL tr_TR)

say() { printf '%s\n' "$*" >&2; }

# Runs a command as root.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Installs the packages that are missing; does nothing, and needs no network, when all are there.
setup_packages() {
    local missing=() package name
    for package in "${PACKAGES[@]}"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    if [ ${#missing[@]} -gt 0 ]; then
        say "Installing ${missing[*]}"
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq update &&
            as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -y --no-install-recommends install \
                "${missing[@]}" >/dev/null || return 1
    fi
    for name in "${LOCALES[@]}"; do
        locale -a | grep -qx "$name.utf8" || as_root localedef -i "$name" -f UTF-8 "$name.UTF-8" || return 1
    done
    drop_stale_builds
}

# Deletes build folders that were configured with another compiler, because CMake would keep using that one.
drop_stale_builds() {
    local arch preset compiler
    for arch in x86_64:win64 i686:win32; do
        preset=build/${arch#*:}
        compiler=$(sed -n 's/^set(CMAKE_CXX_COMPILER \(.*\))$/\1/p' "cmake/mingw-w64-${arch%:*}.cmake")
        [ ! -e "$preset" ] || grep -qs "/$compiler\"" "$preset"/CMakeFiles/*/CMakeCXXCompiler.cmake || rm -rf "$preset"
    done
}

# Configures and builds presets, or one target of a preset: build win64 host:kardel_bench_rules
build() {
    local preset target
    for preset in "$@"; do
        target=()
        [[ $preset == *:* ]] && target=(--target "${preset#*:}")
        preset=${preset%%:*}
        if [ ! -f "build/$preset/build.ninja" ]; then
            cmake --preset "$preset" >"build/$preset.log" 2>&1 || { cat "build/$preset.log" >&2; return 1; }
        fi
        cmake --build --preset "$preset" "${target[@]}" >"build/$preset.log" 2>&1 ||
            { cat "build/$preset.log" >&2; return 1; }
    done
}
mkdir -p build
