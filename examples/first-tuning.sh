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
# What the program keeps of what it writes into a target stays out of the user's own folder.
export TESSAVO_DATA_FOLDER=$work/data

# Runs tessavoctl and shows what it says; the log of an exchange is shown only when it failed.
tessavoctl() {
    if ! "$programs/tessavoctl" "$@" >"$work/said" 2>"$work/log"; then
        cat "$work/said" "$work/log" >&2
        echo "first-tuning: tessavoctl $1 failed" >&2
        exit 1
    fi
    sed 's/^/   /' "$work/said"
}

echo "1. A fresh settings file, and the tuning of first-tuning.txt in its set 1"
tessavoctl new --force "$work/fresh.eqs"
tessavoctl edit "$work/fresh.eqs" --script "$here/first-tuning.txt" --output "$work/tuned.eqs"
# Two files that differ make diff end with 1.
"$programs/tessavoctl" diff "$work/fresh.eqs" "$work/tuned.eqs" | sed 's/^/   /' || true

echo "2. A simulated target on a pseudo-terminal"
coproc target { exec "$programs/tessavo-target" --verbose 2>"$work/target.log"; }
target_id=$!
end_target() {
    kill -INT "$target_id" 2>/dev/null || true
    wait "$target_id" 2>/dev/null || true
}
trap 'end_target; [ -n "${2:-}" ] || rm -rf "$work"' EXIT
# Its first line is the path of its port.
IFS= read -r -t 10 path <&"${target[0]}"
port=${path#/dev/}
echo "   its port is $port"

echo "3. Live: the image goes to the target, which confirms it"
tessavoctl live "$work/tuned.eqs" --set 1 --port "$port"

echo "4. Saved as the target's set 3"
tessavoctl write-set 3 "$work/tuned.eqs" --set 1 --port "$port"

echo "5. Read back into set 1 of a fresh file"
tessavoctl read-set 3 --into "$work/fresh.eqs" --set 1 --output "$work/back.eqs" --port "$port"

echo "6. What the target saw"
grep -E 'live image|set 3' "$work/target.log" | sed 's/^/   /'

echo "7. What differs between the tuning and what came back"
status=0
"$programs/tessavoctl" diff "$work/tuned.eqs" "$work/back.eqs" >"$work/differences" || status=$?
sed 's/^/   /' "$work/differences"
if [ "$status" -ne 1 ]; then
    echo "first-tuning: diff ended with $status instead of 1" >&2
    exit 1
fi
grep -v '^#' "$here/first-tuning.expected" >"$work/expected"
if ! diff -u "$work/expected" "$work/differences"; then
    echo "first-tuning: these are not the differences that the target's formats must make" >&2
    exit 1
fi
echo "   Exactly what the target's number formats must change (first-tuning.expected tells why)."
