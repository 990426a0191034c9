# shellcheck shell=bash
# Read by the other scripts: moves to the project's folder and offers what they share.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

jobs=$(nproc)

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
