#!/usr/bin/env bash
# Shows a file in our text view, in a real Windows process; sets up what this machine lacks first.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/tools/lib.sh"

usage() {
    cat <<'TEXT'
usage: ./demo.sh [--help] [--virtual] [FILE]

Opens FILE (default: a log of this machine) in the sample host. On your display if there is one;
else, or with --virtual, on a virtual display: loads the file, selects text with the mouse, copies
it, and leaves build/demo.png and build/demo-clipboard.txt. --dpi N: at another resolution.
TEXT
}

# The tour on the virtual display: what a user would do, by the display's own input.
tour() {
    local file=$1 window= try x y
    "$commonui_root/tools/run-under-wine" "$program" "$file" &
    local host=$!
    # shellcheck disable=SC2064
    trap "kill $host 2>/dev/null || true" EXIT
    for try in $(seq 150); do
        window=$(xdotool search --onlyvisible --name ' - Console$' 2>/dev/null | head -1 || true)
        [ -z "$window" ] || break
        kill -0 "$host" 2>/dev/null || die "the sample ended before it showed a window"
        sleep 0.1
    done
    [ -n "$window" ] || die "the sample showed no window within 15 seconds"
    xdotool windowmove --sync "$window" 60 40 windowsize --sync "$window" 1140 900 \
        windowactivate --sync "$window"
    wait_for_still_picture
    eval "$(xdotool getwindowgeometry --shell "$window" | sed 's/^/geometry_/')"
    # From the middle of one line to the middle of another, in steps as a hand makes them.
    x=$((geometry_X + 150)) y=$((geometry_Y + 400))
    xdotool mousemove "$x" "$y" mousedown 1
    for try in 1 2 3 4 5 6; do
        xdotool mousemove $((x + try * 60)) $((y + try * 20))
        sleep 0.05
    done
    xdotool mouseup 1
    sleep 0.3
    xdotool key ctrl+c
    sleep 0.3
    "$commonui_root/tools/screenshot" "$commonui_root/build/demo.png"
    timeout 10 xclip -o -selection clipboard >"$commonui_root/build/demo-clipboard.txt" ||
        die "nothing came from the clipboard"
    xdotool key alt+F4
    wait "$host" || true
    trap - EXIT
}

wait_for_still_picture() {
    local before= now try
    for try in $(seq 100); do
        now=$(import -window root png:- | sha256sum)
        [ "$now" != "$before" ] || return 0
        before=$now
        sleep 0.4
    done
}

default_file() {
    local file
    for file in /var/log/syslog /var/log/dpkg.log /var/log/apt/term.log /var/log/bootstrap.log; do
        [ -s "$file" ] && [ -r "$file" ] && { printf '%s\n' "$file"; return; }
    done
    die "this machine has no readable log; name a file"
}

virtual=0 inside=0 file= dpi=96
while [ $# -gt 0 ]; do
    case $1 in
    -h | --help) usage; exit 0 ;;
    --virtual) virtual=1 ;;
    --inside) inside=1 ;;  # the second call, on the virtual display
    --dpi) dpi=$2; shift ;;
    -*) usage >&2; exit 2 ;;
    *) file=$1 ;;
    esac
    shift
done
file=$(realpath -m "${file:-$(default_file)}")
program="$commonui_root/build/release/bin/Console.exe"

if [ $inside = 1 ]; then
    tour "Z:${file//\//\\}"
    exit 0
fi

cd "$commonui_root"
tools/setup
mkdir -p build
exec 8>build/lock
flock 8
tools/build release Console 8>&-
flock -u 8

if [ $virtual = 0 ] && [ -n "${DISPLAY:-}" ] && xprop -root >/dev/null 2>&1; then
    say "showing $file on display $DISPLAY"
    COMMONUI_TIMEOUT=infinity exec tools/with-desktop --own-display --themed \
        tools/run-under-wine "$program" "Z:${file//\//\\}"
fi
rm -f build/demo.png build/demo-clipboard.txt
say "showing $file on a virtual display (about ten seconds)"
tools/with-desktop --dpi "$dpi" "$0" --inside "$file"
[ -s build/demo.png ] || die "no picture was made"
[ -s build/demo-clipboard.txt ] || die "no text was copied"
printf 'picture:   %s\nclipboard: %s\n' "$PWD/build/demo.png" "$PWD/build/demo-clipboard.txt"
