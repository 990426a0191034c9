#!/usr/bin/env bash
# A live session in the window, without hardware and without a desktop: the program runs with its simulated target
# on a display in memory, a few clicks are made in it, and each step leaves a picture.
#
#   examples/live-session.sh [FOLDER WITH THE PROGRAMS [FOLDER FOR THE PICTURES]]
#
# Needs Xvfb, xdotool and ImageMagick's import. Ends with 0 when the program has lived through every step.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
programs=${1:-$here/../build/release/bin}
pictures=${2:-live-session}
for tool in Xvfb xdotool import; do
    if ! command -v "$tool" >/dev/null; then
        echo "live-session: $tool is needed and not there" >&2
        exit 1
    fi
done
mkdir -p "$pictures"

# A home of its own: the session neither reads nor writes what the person has set.
home=$(mktemp -d)
chmod 700 "$home"
program=
display=
end_session() {
    [ -z "$program" ] || kill "$program" 2>/dev/null || true
    [ -z "$display" ] || kill "$display" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$home"
}
trap end_session EXIT
mkfifo "$home/display"
Xvfb -displayfd 3 -screen 0 1280x900x24 3>"$home/display" 2>"$home/xvfb.log" &
display=$!
IFS= read -r -t 10 number <"$home/display"
export DISPLAY=:$number
env -u WAYLAND_DISPLAY XDG_CONFIG_HOME="$home" XDG_RUNTIME_DIR="$home" QT_QPA_PLATFORM=xcb \
    "$programs/tessavo" --demo >"$home/said" 2>&1 &
program=$!

window=
for _ in $(seq 100); do
    window=$(xdotool search --onlyvisible --name '^Tessavo Velmira$' 2>/dev/null | head -n 1) && [ -n "$window" ] && break
    sleep 0.1
done
if [ -z "$window" ]; then
    cat "$home/said" >&2
    echo "live-session: the window did not appear" >&2
    exit 1
fi
sleep 1

# Clicks at a place of the window, in its pixels.
click() {
    xdotool mousemove --window "$window" "$1" "$2" click 1
    sleep 0.3
}
step=0
picture() {
    step=$((step + 1))
    kill -0 "$program"
    import -window "$window" +repage "$pictures/$step-$1.png"
    echo "   $pictures/$step-$1.png"
}

echo "1. Live Mode: the current set goes to the target, which confirms it"
click 436 52
sleep 4
picture live-mode

echo "2. A band is lifted: the drag shows at once, the target follows when the thumb is let go"
xdotool mousemove --window "$window" 107 274 mousedown 1
for y in 270 262 254 246 238; do
    xdotool mousemove --window "$window" 107 "$y"
    sleep 0.05
done
picture drag
xdotool mouseup 1
sleep 4
picture confirmed

echo "3. What plays is saved as the target's set 3, and its versions are read"
click 733 95
click 159 164
sleep 2
click 904 474
sleep 2
picture communication

echo "4. Clip detection asks the target once a second, beside Live Mode"
click 607 95
click 92 151
sleep 3
picture clip-detection
