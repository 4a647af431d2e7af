#!/usr/bin/env bash
# Shows a file in our text view, in a real Windows process; sets up what this machine lacks first.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/tools/lib.sh"

usage() {
    cat <<'TEXT'
usage: ./demo.sh [--help] [--virtual] [FILE] [--connect HOST PORT]

Opens FILE (default: a log of this machine) in the sample host, and beside it a conversation with PORT
of HOST (default: a server of our own on the loopback). One of the two named: only that one. On your
display if there is one; else, or with --virtual, on a virtual display: loads the file, selects text
with the mouse, copies it, types two lines to the server, looks for a word, begins an address, and
leaves build/demo.png, with the address's completions open, and build/demo-clipboard.txt.
--dpi N: at another resolution.
TEXT
}

# The tour on the virtual display: what a user would do, by the display's own input.
tour() {
    local arguments=() window viewer=
    [ -z "$file" ] || arguments+=("Z:${file//\//\\}")
    [ -z "$host" ] || arguments+=(--connect "$host" "$port")
    "$commonui_root/tools/run-under-wine" "$program" "${arguments[@]}" &
    local sample=$!
    # shellcheck disable=SC2064
    trap "kill $sample 2>/dev/null || true" EXIT
    if [ -n "$file" ]; then
        viewer=$(find_window "^${file##*/} - Console\$")
        place_window "$viewer" 10 40 1000 900
        select_and_copy "$viewer"
    fi
    if [ -n "$host" ]; then
        window=$(find_window ":$port - Console\$")
        place_window "$window" 1030 40 620 900
        talk
    fi
    [ -z "$viewer" ] || search_and_complete "$viewer"
    "$commonui_root/tools/screenshot" "$commonui_root/build/demo.png"
    for window in $(xdotool search --onlyvisible --name ' - Console$'); do
        xdotool windowactivate --sync "$window" key alt+F4 2>/dev/null || true
    done
    wait "$sample" || true
    trap - EXIT
}

# Prints the window whose title matches, once it is there.
find_window() {
    local try window
    for try in $(seq 150); do
        window=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1 || true)
        [ -z "$window" ] || { printf '%s\n' "$window"; return; }
        sleep 0.1
    done
    die "the sample showed no window '$1' within 15 seconds"
}

place_window() {
    xdotool windowmove --sync "$1" "$2" "$3" windowsize --sync "$1" "$4" "$5" \
        windowactivate --sync "$1"
    wait_for_still_picture
}

# From the middle of one line to the middle of another, in steps as a hand makes them.
select_and_copy() {
    local try x y
    eval "$(xdotool getwindowgeometry --shell "$1" | sed 's/^/geometry_/')"
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
    timeout 10 xclip -o -selection clipboard >"$commonui_root/build/demo-clipboard.txt" ||
        die "nothing came from the clipboard"
}

talk() {
    local line
    for line in 'Hello there' menu; do
        xdotool type --delay 40 "$line"
        xdotool key Return
        sleep 1
    done
    wait_for_still_picture
}

# A word of the file, and the folder that it lies in; the list stays open.
search_and_complete() {
    local word folder=${file%/*}/
    word=$(head -n 2000 "$file" | grep -aoE '[[:alpha:]]{5,}' | tail -1 || true)
    xdotool windowactivate --sync "$1" key ctrl+e
    xdotool type --delay 40 "$word"
    sleep 0.5
    xdotool key ctrl+l
    xdotool type --delay 40 "Z:${folder//\//\\}"
    sleep 1
    xdotool key Down Down
    wait_for_still_picture
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

# Our own server lives as long as this script.
start_server() {
    exec 7< <(exec "$commonui_root/tools/demo-server" 8>&-)
    local server=$!
    # shellcheck disable=SC2064
    trap "kill $server 2>/dev/null || true" EXIT
    trap 'exit 143' INT TERM HUP
    read -r -t 20 port <&7 || die "the demonstration's server did not start"
    host=127.0.0.1
}

virtual=0 inside=0 file= host= port= dpi=96
while [ $# -gt 0 ]; do
    case $1 in
    -h | --help) usage; exit 0 ;;
    --virtual) virtual=1 ;;
    --inside) inside=1 ;;  # the second call, on the virtual display
    --dpi) dpi=$2; shift ;;
    --connect)
        [ $# -ge 3 ] || { usage >&2; exit 2; }
        host=$2 port=$3
        shift 2
        ;;
    -*) usage >&2; exit 2 ;;
    *) file=$(realpath -m "$1") ;;
    esac
    shift
done
program="$commonui_root/build/release/bin/Console.exe"

if [ $inside = 1 ]; then
    tour
    exit 0
fi

cd "$commonui_root"
tools/setup
mkdir -p build
exec 8>build/lock
flock 8
tools/build release Console 8>&-
flock -u 8

if [ -z "$file$host" ]; then
    file=$(default_file)
    start_server
fi
shown="${file:+$file }${host:+$host:$port}"
if [ $virtual = 0 ] && [ -n "${DISPLAY:-}" ] && xprop -root >/dev/null 2>&1; then
    say "showing $shown on display $DISPLAY"
    COMMONUI_TIMEOUT=infinity tools/with-desktop --own-display --themed \
        tools/run-under-wine "$program" ${file:+"Z:${file//\//\\}"} \
        ${host:+--connect "$host" "$port"}
    exit 0
fi
rm -f build/demo.png build/demo-clipboard.txt
say "showing $shown on a virtual display (about ten seconds)"
tools/with-desktop --dpi "$dpi" --size 1660x1000 "$0" --inside ${file:+"$file"} \
    ${host:+--connect "$host" "$port"}
[ -s build/demo.png ] || die "no picture was made"
printf 'picture:   %s\n' "$PWD/build/demo.png"
if [ -n "$file" ]; then
    [ -s build/demo-clipboard.txt ] || die "no text was copied"
    printf 'clipboard: %s\n' "$PWD/build/demo-clipboard.txt"
fi
