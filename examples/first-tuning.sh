#!/usr/bin/env bash
# The whole job once, without hardware: tune two channels, send the tuning live to a simulated target, save it
# there as set 3, read that set back and compare.
#
#   examples/first-tuning.sh [FOLDER WITH THE PROGRAMS [FOLDER FOR THE FILES]]
#
# Ends with 0 when exactly those values differ that the target's number formats must change.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
programs=${1:-$here/../build/release/bin}
work=${2:-}
if [ -z "$work" ]; then
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
fi
mkdir -p "$work"
tessavoctl() { "$programs/tessavoctl" "$@"; }

echo "1. A fresh settings file, and the tuning of $(basename "$here")/first-tuning.txt in its set 1"
tessavoctl new "$work/fresh.eqs"
tessavoctl edit "$work/fresh.eqs" --script "$here/first-tuning.txt" \
    --output "$work/tuned.eqs" --image "$work/tuned.bin"

echo "2. A simulated target on a pseudo-terminal"
coproc target { exec "$programs/tessavo-target" 2>"$work/target.log"; }
# shellcheck disable=SC2154 # set by coproc
target_id=$target_PID
end_target() {
    kill -INT "$target_id" 2>/dev/null || true
    wait "$target_id" 2>/dev/null || true
}
trap 'end_target; [ -n "${2:-}" ] || rm -rf "$work"' EXIT
# Its first line ends with the path of its port.
read -r -t 10 first_line <&"${target[0]}"
port=${first_line##*/dev/}
echo "   $first_line"

echo "3. Live: the image goes to the target, which confirms it"
tessavoctl live "$work/tuned.eqs" --set 1 --port "$port" 2>&1 | sed 's/^/   /'

echo "4. Saved as the target's set 3"
tessavoctl write-set 3 "$work/tuned.eqs" --set 1 --port "$port" 2>&1 | sed 's/^/   /'

echo "5. Read back into set 1 of a fresh file"
tessavoctl read-set 3 --into "$work/fresh.eqs" --set 1 --output "$work/back.eqs" --port "$port" 2>&1 | sed 's/^/   /'

echo "6. What differs between the tuning and what came back"
status=0
tessavoctl diff "$work/tuned.eqs" "$work/back.eqs" >"$work/differences.txt" || status=$?
sed 's/^/   /' "$work/differences.txt"
if [ "$status" -ne 1 ]; then
    echo "first-tuning: diff ended with $status instead of 1" >&2
    exit 1
fi
# Delays go out at 49.5 samples per ms and come back at 48; input gains travel as whole dB.
if ! diff -u "$here/first-tuning.expected" "$work/differences.txt"; then
    echo "first-tuning: these are not the differences that the target's formats must make" >&2
    exit 1
fi
echo "Exactly the expected differences."
