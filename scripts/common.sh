# shellcheck shell=bash
# Read by the other scripts: moves to the project's folder and offers what they share.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

jobs=$(nproc)
# Only so the compiler's cache serves builds with precompiled headers.
export CCACHE_SLOPPINESS=pch_defines,time_macros
# So a copy of the tree below the project finds what the project's own builds have left there.
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$PWD}

# configure PRESET [-DOPTION=VALUE...]
# These options may stand in the environment, as CI has them.
configure() {
    local preset=$1 option options=()
    shift
    for option in TESSAVO_WERROR TESSAVO_PRECOMPILE TESSAVO_TEST_ROOMS TESSAVO_GUI; do
        [ -z "${!option:-}" ] || options+=("-D$option=${!option}")
    done
    cmake --preset "$preset" "${options[@]}" "$@"
}

# build PRESET [-DOPTION=VALUE...]: configures and builds a preset.
build() {
    configure "$@"
    cmake --build "build/$1" --parallel "$jobs"
}

# Where the window toolkit for Windows stands, or will; scripts/windows-qt builds it.
windows_qt_folder() {
    echo "${TESSAVO_WINDOWS_QT:-${XDG_CACHE_HOME:-$HOME/.cache}/tessavo/qt6-mingw}"
}

# The one YAML library, libyaml of this version, for Windows: where it stands, or will; scripts/windows-yaml builds it.
# cmake/libraries.cmake holds every build to the version.
yaml_version=$(sed -nE 's/^set\(TESSAVO_YAML_VERSION ([0-9.]+)\)$/\1/p' cmake/libraries.cmake)
windows_yaml_folder() {
    echo "${TESSAVO_WINDOWS_YAML:-${XDG_CACHE_HOME:-$HOME/.cache}/tessavo/libyaml-$yaml_version-mingw}"
}

# Where Debian keeps the build descriptions of this machine's own window toolkit.
host_cmake_folder() {
    echo "/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH 2>/dev/null || gcc -dumpmachine)/cmake"
}

# Wine with a folder of its own, which prepare_wine makes.
use_wine() {
    export WINEPREFIX=$1
    # In a plain C locale Wine knows file names in ASCII only.
    export LC_ALL=C.UTF-8
    export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml='
    wineserver=$(command -v wineserver || command -v wineserver-stable)
}
prepare_wine() {
    [ -d "$WINEPREFIX/drive_c" ] || quiet "Preparing Wine" timeout -k 10 180 wine wineboot -i
}
# Ends this folder's server only.
end_wine() {
    "$wineserver" -k || true
}

# quiet LABEL COMMAND...: runs a command, showing its output only when it fails.
quiet() {
    local label=$1 log
    shift
    log=$(mktemp)
    echo "$label"
    if ! "$@" >"$log" 2>&1; then
        cat "$log"
        rm -f "$log"
        echo "$label: failed" >&2
        return 1
    fi
    rm -f "$log"
}
