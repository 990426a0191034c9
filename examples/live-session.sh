#!/usr/bin/env bash
# A live session in the window, without hardware and without a desktop: the program runs beside a simulated target
# on a display in memory, a few clicks are made in it, and each step leaves a picture.
#
#   examples/live-session.sh [FOLDER WITH THE PROGRAMS [FOLDER FOR THE PICTURES, or - for none]]
#
# Needs Xvfb and xdotool, and for pictures ImageMagick's import. Ends with 0 when the target has confirmed each image
# that was sent, saved it, told its versions and its clip states, and the program has lived through every step.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
programs=${1:-$here/../build/release/bin}
pictures=${2:-live-session}
tools=(Xvfb xdotool)
[ "$pictures" = - ] || tools+=(import)
for tool in "${tools[@]}"; do
    if ! command -v "$tool" >/dev/null; then
        echo "live-session: $tool is needed and not there" >&2
        exit 1
    fi
done
[ "$pictures" = - ] || mkdir -p "$pictures"

# A home of its own: the session neither reads nor writes what the person has set.
home=$(mktemp -d)
chmod 700 "$home"
program=
display=
target_id=
end_session() {
    [ -z "$program" ] || kill "$program" 2>/dev/null || true
    [ -z "$target_id" ] || kill -INT "$target_id" 2>/dev/null || true
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
export XDG_CONFIG_HOME=$home XDG_RUNTIME_DIR=$home TESSAVO_DATA_FOLDER=$home/data

coproc target { exec "$programs/tessavo-target" --verbose 2>"$home/target.log"; }
target_id=$!
# Its first line is the path of its port; the program finds it as the one that was used last.
IFS= read -r -t 10 path <&"${target[0]}"
mkdir "$home/Velmira"
printf '[General]\nport=%s\n' "${path#/dev/}" >"$home/Velmira/Velmira Audio Systems Equalizing Tool.conf"
env -u WAYLAND_DISPLAY QT_QPA_PLATFORM=xcb "$programs/tessavo" >"$home/said" 2>&1 &
program=$!

window=
for _ in $(seq 300); do
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
    [ "$pictures" != - ] || return 0
    import -window "$window" +repage "$pictures/$step-$1.png"
    echo "   $pictures/$step-$1.png"
}

# How often the target has told this.
told() {
    grep -c -F "$1" "$home/target.log" || true
}
# Waits until the target has told something so many times.
await() {
    local tries=600
    until [ "$(told "$1")" -ge "$2" ]; do
        kill -0 "$program"
        tries=$((tries - 1))
        if [ "$tries" -eq 0 ]; then
            cat "$home/said" "$home/target.log" >&2
            echo "live-session: the target did not tell \"$1\"" >&2
            exit 1
        fi
        sleep 0.1
    done
    # The window shows it a moment later.
    sleep 0.7
}
confirmation="confirmed the live image"

echo "1. Live Mode: the current set goes to the target, which confirms it"
click 436 52
await "$confirmation" 1
picture live-mode

echo "2. A band is lifted: the drag shows at once, the target follows when the thumb is let go"
xdotool mousemove --window "$window" 107 274 mousedown 1
for y in 270 262 254 246 238; do
    xdotool mousemove --window "$window" 107 "$y"
    sleep 0.05
done
picture drag
before=$(told "$confirmation")
xdotool mouseup 1
await "$confirmation" $((before + 1))
picture confirmed

echo "3. What plays is saved as the target's set 3, and its versions are read"
click 733 95
click 159 164
await "saved the live image as set 3" 1
click 904 474
await "sent the versions" 1
picture communication

echo "4. Clip detection asks the target once a second, beside Live Mode"
click 607 95
click 92 151
await "sent the clip state" 2
picture clip-detection

if grep -q -F "did not confirm" "$home/target.log"; then
    echo "live-session: the target did not confirm an image" >&2
    exit 1
fi
