# shellcheck shell=bash disable=SC2154
# A virtual screen with the updater on it: where its controls are, a hand that touches them and an
# eye that waits for what should come; and what can be asked of the dispenser outside the program.
# Sourced inside the dispenser, with `system` set.
store=/opt/Merivon/Versions
simulation=/opt/Merivon/Simulation
database=/opt/Merivon/Database/merivon_database_enc.db
stick=/media/technician/STICK
backup=/media/technician/BACKUP
package=$stick/updates/quillmark-$system-1.04.00.tar.gz
older_package=$backup/quillmark-$system-1.01.00.tar.gz
pictures=/tmp/pictures
log=/tmp/log
frame_buffer=/tmp/Xvfb_screen0
screen=/tmp/screen
taken=0
width=1920 height=1080
[[ $system != talvogateway ]] || width=800 height=480

record() { command cut -f 2 "$simulation/record"; }
logged() { grep -aqF -- "$1" "$log"; }
is_current() { [[ $(readlink "$store/Merivon-current") == "$system-$1" ]]; }
# sql STATEMENTS [DATABASE]
sql() { printf "PRAGMA key='d8pantry%%';\n.timeout 20000\n%s;\n" "$1" | sqlcipher -bail "${2-$database}" 2>&1; }

# Centres of the controls, by the edges and the middle of the panel that holds them all.
declare -A control
layout()
{
    local middle=$((width / 2)) centre=$((height / 2))
    local panel_width=$((width - 50 < 900 ? width - 50 : 900))
    local panel_height=$((height - 88 < 500 ? height - 88 : 500))
    local right=$((middle + panel_width / 2)) top=$((centre - panel_height / 2))
    local list_width=$((panel_width / 2 - 30 < 400 ? panel_width / 2 - 30 : 400))
    local list=$((right - panel_width + 20 + list_width / 2)) list_top=$((top + 25))
    local beside_list=$((list + list_width / 2 + (panel_width - list_width - 40) / 2 + 10))
    # Beside the wheel for firmware, where there is one, the other leaves the middle.
    local wheel=$middle
    [[ $system != kra ]] || wheel=$((middle - 180))

    control=(
        ["update"]="$((middle - 66)) $centre" ["advanced"]="$((middle + 66)) $centre"
        ["corner"]="$((right - 79)) $((top + panel_height - 59))"
        ["first entry"]="$list $((list_top + 48))" ["third entry"]="$list $((list_top + 248))"
        ["install"]="$beside_list $((centre - 15))" ["back"]="$beside_list $((centre + 79))"
        ["wheel up"]="$wheel $((centre - 104))" ["wheel install"]="$((wheel - 54)) $((centre + 78))"
        ["wheel remove"]="$((wheel + 54)) $((centre + 78))" ["yes"]="$middle $((top + 174))"
        ["firmware install"]="$((middle + 180)) $((centre + 78))" ["file"]="$middle $((centre + 150))"
        ["first row"]="$middle $((top + 83))" ["import"]="$((right - 64)) $((top + 190))"
        ["close"]="$((right - 64)) $((top + panel_height - 44))"
    )
}

# point CONTROL: sets x and y.
point() { read -r x y <<< "${control[$1]}"; }

press() { point "$1" && xdotool mousemove "$x" "$y" click 1; }

# All that is asked about the screen is asked about the last grab of it: the file in which the virtual
# screen keeps its pixels, four bytes each, behind a header.
grab() { cp "$frame_buffer" "$screen"; }
save() { ((++taken)) && convert "xwd:$screen" "$(printf '%s/%02d-%s.png' "$pictures" "$taken" "$1")"; }

# Of one point, 0 to 255: its red.
brightness() { od -An -tu1 -j $((header + 4 * (width * $2 + $1) + 2)) -N 1 "$screen"; }

# A button's corner is free of its label: white when it can be used, grey when it cannot.
corner() { point "$1" && brightness $((x - 38)) $((y - 17)); }
offers() { (($(corner "$1") > 200)); }
refuses() { (($(corner "$1") / 64 == 1 || $(corner "$1") / 64 == 2)); }

# At the left edge, where nothing else ever is: a message bar darkens the lower one of two points, a
# message on the whole screen both, as it fades in. A grab may hold the halves of two frames, so a bar
# is looked at twice.
lower() { brightness 16 $((height - 61)); }
upper() { brightness 16 60; }
no_message() { (($(lower) > 30)); }
full_message() { (($(lower) < 7 && $(upper) < 7)); }
lower_alone() { (($(lower) < 20 && $(upper) > 30)); }
bar() { lower_alone && grab && lower_alone; }

# A checksum of everything but the strip where the busy bar runs and the time below it.
look()
{
    {
        head -c $((header + 4 * width * (height / 2 + 12)))
        head -c $((4 * width * 100)) > /dev/null
        cat
    } < "$screen" | cksum
}
other_than() { [[ $(look) != "$1" ]]; }

# picture NAME CONDITION [ARG...]: of a moment when the condition holds, and nothing moves any more
# unless the moment passes first.
picture()
{
    local now before=
    await "${@:2}"
    while now=$(look) && [[ $now != "$before" ]]; do
        before=$now
        mv "$screen" "$screen.kept"
        sleep 0.1
        grab
        "${@:2}" || break
    done
    mv "$screen.kept" "$screen"
    save "$1"
}

step() { printf '%3d s  %s\n' "$SECONDS" "$*"; }

expect() { "$@" || fail "$@"; }

fail()
{
    grab
    save failed
    printf 'FAILED: expected: %s\nThe picture "failed" shows the screen. The end of the log:\n' "$*"
    tail -n 40 "$log"
    exit 1
}

# comes CONDITION [ARG...]
patience=60 # seconds, enough for a sanitizer's pace
comes()
{
    local end=$((SECONDS + patience))
    until "$@"; do
        ((SECONDS < end)) || fail "$@"
        sleep 0.05
    done
}

# await CONDITION [ARG...]: of what is on the screen, for as long as the updater runs.
await() { comes is_seen "$@"; }
is_seen()
{
    grab && "$@" && return
    kill -0 "$updater" 2> /dev/null || fail "$@" "(the updater has ended)"
    false
}

# The screen stays as it is when a client leaves and no other is there yet.
start_screen()
{
    mkdir -p "$pictures"
    exec {ready}<> <(:)
    Xvfb -displayfd "$ready" -noreset -fbdir "${frame_buffer%/*}" -screen 0 "${width}x${height}x24" 2> /tmp/screen.log &
    read -r -t "$patience" DISPLAY <&"$ready" || { cat /tmp/screen.log; exit 1; }
    header=$(($(stat -c %s "$frame_buffer") - 4 * width * height))
    export DISPLAY=:$DISPLAY QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software
    layout
}
