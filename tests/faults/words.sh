# shellcheck shell=bash disable=SC2034,SC2154
# The words of the fault table: what goes wrong, the roads of a technician's touches, the moments of
# a kill, and what has to hold. Sourced in the dispenser, after screen.sh. Whatever is waited for is a
# condition, and none of the times between touches is one that a busy machine could outrun.
defaults=$store/Merivon-current/Database/merivon_defaults.db
image=$stick/MerivonMFV_V2.16.hex
stock=/tmp/stock    # what was there before, and has to be there afterwards
with=(env --default-signal)     # stands before the program's name
output='> "$log" 2>&1'
updater=none
way_back=corner     # the control that leads back from the panel in sight

# --- Questions.

calls() { record | grep -c "^$1"; }
called() { record | grep -q "^$1"; }
stored() { [[ -f $store/$system-$1/Database/merivon_defaults.db && -d $store/$system-$1/ServiceUI/Scripts ]]; }
not() { ! "$@"; }
is() { [[ $1 == "$2" ]]; }
times() { is "$(calls "vemlo $1")" "$2"; }
has_ended() { ! kill -0 "$updater" 2> /dev/null; }
on_advanced() { offers "wheel remove" && offers corner; }

# --- What goes wrong.

# fault SUBCOMMAND FAULT [VALUE]: of the control command or of reboot.
declare -A usual=([delay]=1.5 [fail]=3 [die]=KILL [flood]=20 [error]="out of order")
fault() { echo "$1 $2 ${3-${usual[$2]-}}" >> "$simulation/faults"; }

# hold WHEN: until told to go on, the control command waits before the subcommand of that name does
# its work, or a tool of the system that it or the updater's shell calls waits before or after its own.
declare -A tools=([unpacking]="tar before *" [unpacked]="tar after *" [renaming]="mv before *-1.0?.00" [copied]="cp after *"
    [changed]="mv after *enc.db" [switching]="mv before *Merivon-current" [removing]="rm before *" [removed]="rm after *")
hold()
{
    touch /tmp/hold
    if [[ -v tools[$1] ]]; then
        echo "${tools[$1]#* }" > /tmp/hold
        cp "$here/held_tool" "/usr/local/bin/${tools[$1]%% *}"
    else
        held=$1
        fault "$1" hold /tmp/hold
    fi
}
is_held() { [[ -e /tmp/reached ]] || { [[ -n ${held-} ]] && called "vemlo $held"; }; }
go_on() { /bin/rm -f /tmp/hold /tmp/reached "$simulation/faults" /usr/local/bin/{tar,mv,cp,rm}; }

# lock writer|reader|all SECONDS [DATABASE]: another program that has it in use.
lock()
{
    local -A how=([writer]="BEGIN IMMEDIATE" [reader]="BEGIN; SELECT count(*) FROM dictionary" [all]="BEGIN EXCLUSIVE")
    rm -f /tmp/locked
    sql "${how[$1]};
.shell touch /tmp/locked; sleep $2
COMMIT" "${3-$database}" > /dev/null &
    locker=$!
    comes test -e /tmp/locked
}
unlock() { [[ -z ${locker-} ]] || pkill -KILL -P "$locker"; }

# A disk of a megabyte with no room left, under the folder named.
fill_disk()
{
    cp -a "$1" /run/small/ && rm -rf "$1" && ln -s "/run/small/${1##*/}" "$1"
    dd if=/dev/zero of=/run/small/fill bs=4096 2> /dev/null
    true
}
large_defaults() { sql "INSERT INTO dictionary(name, value) VALUES('large', hex(zeroblob(100000)))" "$defaults" > /dev/null; }
# spoil WHAT: the shared database.
declare -A spoilers=([missing]='rm "$database"' [empty]=': > "$database"' [damaged]='damage "$database" 5'
    [foreign]='rm "$database" && sqlcipher "$database" "PRAGMA key=1; CREATE TABLE dictionary(id, name, value);"'
    [folder]='rm "$database" && mkdir "$database"' [short]='truncate -s 3000 "$database"'
    [unreadable]='chmod 0 "$database"'
    [without-tables]='sql "DROP TABLE dictionary; DROP TABLE translations; DROP TABLE systemMessages"')
spoil() { eval "${spoilers[$1]}"; }
damage() { printf 'damaged page' | dd of="$1" bs=1 seek=$(($2 * 1024 + 100)) conv=notrunc 2> /dev/null; }
setting() { sql "UPDATE dictionary SET value='$2' WHERE name='$1'" > /dev/null; take_stock; }
pull() { rm -rf /media/technician/*/*; }
declare -A hostile=([quote]="x' --" [statement]="';DELETE FROM dictionary;--" [shell]='$(touch owned);`touch owned`&'
    [markup]='<h1>x<img src=x>' [percent]='%1%2%n' [dash]='-rf ..' [line]=$'a\nb' [long]="$(printf 'x%.0s' {1..200})"
    [right-to-left]=$'\u202eabc\u05d0' [bytes]=$'\xff\xfe')
named() { mv "$package" /tmp/kept; pull; mv /tmp/kept "$stick/quillmark-${hostile[$1]}-1.tar.gz"; }
link_everywhere()
{
    local each
    ln -s / /proc /sys .. . "$stick"
    mkdir "$stick"/folder{0..9}
    for each in "$stick"/folder*; do ln -s "$stick"/folder{0..9} "$each"; done
}
already_imported() { vemlo import "$package" && take_stock; }
cut_short() { local part; part=$(head -c 300 "$1" | base64) && base64 -d <<< "$part" > "$1"; }
same_image() { (cd "$stick" && seq "$1" | xargs mkdir && for each in [0-9]*; do : > "$each/X_MFV_V1.hex"; done); }
no_versions()
{
    mv "$store/$system-1.03.00" "$store/kept" && ln -sfn kept "$store/Merivon-current"
    rm -r "$store/$system-1.02.00" && take_stock
}
crowd() { mkdir "$stick/many" && (cd "$stick/many" && seq "$1" | xargs touch); }
slow_media() { with+=("SLOW_FOLDER=/media/technician" "LD_PRELOAD=${program%/*}/benchmarks/slow_folder.so"); }
clock() { echo "$1" > /tmp/clock.new && mv /tmp/clock.new /tmp/clock; }
settable_clock()
{
    clock +0
    with+=("LD_PRELOAD=$(ls /usr/lib/*/faketime/libfaketime.so.1)" FAKETIME_TIMESTAMP_FILE=/tmp/clock
        FAKETIME_NO_CACHE=1 FAKETIME_DONT_FAKE_MONOTONIC=1)
}
# What is left free for the updater: MEGABYTES more than it has now.
limit_memory() { prlimit --pid "$updater" --as=$((($(awk '/VmSize/ {print $2}' "/proc/$updater/status") + $1 * 1024) * 1024)); }
mute_bus()
{
    local daemon
    { read -r DBUS_SESSION_BUS_ADDRESS; read -r daemon; } < <(dbus-daemon --session --fork --print-address=1 --print-pid=1)
    export DBUS_SESSION_BUS_ADDRESS
    kill -STOP "$daemon"
}
# A bus that lets every caller log in and then says nothing.
silent_bus()
{
    export DBUS_SESSION_BUS_ADDRESS=unix:path=/tmp/bus
    perl -MIO::Socket::UNIX -e '$bus = IO::Socket::UNIX->new(Local => "/tmp/bus", Listen => 9);
        while ($_ = $bus->accept) { push @callers, $_; syswrite $_, "OK " . "0" x 32 . "\r\n" }' &
    comes test -S /tmp/bus
}
# Standard output as a pipe that is full, and that nobody reads.
full_pipe()
{
    mkfifo /tmp/pipe
    exec 5<> /tmp/pipe
    dd if=/dev/zero of=/tmp/pipe oflag=nonblock bs=4096 2> /dev/null
    output='> /tmp/pipe'
}
touch_device()
{
    fingers=$((20000 + RANDOM % 20000))
    with+=("QT_QPA_GENERIC_PLUGINS=tuiotouch:udp=$fingers" QT_TUIOTOUCH_DELIVER_WITHOUT_FOCUS=1)
}

# --- Roads. Each ends with its last touch.

# Without the tenth of a second that xdotool waits behind a click.
press() { point "$1" && xdotool mousemove "$x" "$y" click --delay 0 1; }
begin()
{
    eval '"${with[@]}" "$program" '"$output &"
    updater=$!
}
start() { begin; await offers advanced; }
# tap CONTROL CONDITION...: again if nothing came of it for long. A touch is lost, and has to be, while
# the screen is being changed, which may be drawn already.
tap()
{
    local again=$((SECONDS + 5))
    press "$1"
    comes is_tapped "$@"
}
is_tapped()
{
    grab && "${@:2}" && return
    ((SECONDS < again)) || { press "$1" && again=$((SECONDS + 5)); }
    false
}
begins() { not no_message; }
open_update() { tap update refuses install; way_back=back; }
open_advanced() { tap advanced on_advanced; way_back=corner; }
scan() { open_update; await offers "first entry"; }
choose() { tap "$1" offers install; }
install() { tap install begins; }
update() { scan; choose "third entry"; install; }
firmware() { scan; choose "first entry"; install; }
wheel() { open_advanced; tap "wheel install" begins; }
stored_firmware() { open_advanced; tap "firmware install" begins; }
ask_removal() { open_advanced; tap "wheel up" other_than "$(look)"; tap "wheel remove" not offers "wheel remove"; }
remove() { ask_removal; tap yes logged "rm -rf"; }
choose_file() { open_advanced; tap file refuses import; comes file_chosen; }
# The first row is the medium, then the file on it.
file_chosen() { grab; offers import || { press "first row"; sleep 0.3; false; }; }
file() { choose_file; tap import begins; }
restart() { tap corner restarts; }
restarts() { has_ended || refuses corner; }
restore() { "${program%/*}/tests/app/logs" restore > "$log" 2>&1 & updater=$!; }
twice() { for each; do point "$each" && xdotool mousemove "$x" "$y" click --repeat 2 --delay 60 1; done; }
# down CONTROL...: where fingers lie from now on.
down()
{
    local at=()
    for each; do point "$each"; at+=("$x" "$y"); done
    "$here/touch" "$fingers" "$width" "$height" "${at[@]}"
    sleep 0.1
}
# Two fingers at once, on two controls; then none.
fingers() { down "$@"; down; }
# Stops half a second before a message on the whole screen is gone.
tapped_away() { grab; (($(lower) > 20)) || ! press "$1"; }

# --- Moments.

line() { comes logged "$1"; }
reach() { comes is_held; }
see() { await "$@"; }
see_change() { local shown; shown=$(look); await other_than "$shown"; }

kill-updater() { kill -KILL "$updater"; comes has_ended; }
of_control() { pgrep -f '/usr/local/bin/(vemlo|tar|mv|cp|rm)'; }
kill-control() { of_control | xargs -r kill -KILL; go_on; }
job_is_over() { ! of_control > /dev/null; }
finishes() { go_on; comes job_is_over; }
# The player outside takes all of the dispenser away.
cut() { touch /tmp/cut; sleep infinity; }
quit_by_bus() { dbus-send --type=method_call --dest=org.merivon.softwareUpdater / org.merivon.softwareUpdater.quitApp; }
# quit_by SIGNAL [PROCESS]: of all that has no session of its own, as by a Ctrl-C in a terminal.
quit_by() { kill -s "$1" -- "${2-$updater}"; comes has_ended; }

# --- What has to hold.

ends()
{
    comes has_ended
    wait "$updater"
    expect is $? 0
}
# By "Back" and "Restart Merivon", tapped until they are taken.
has_left()
{
    has_ended && return
    [[ $way_back == corner ]] || press "$way_back"
    press corner
    sleep 0.1
    false
}
leaves()
{
    comes has_left
    ends
    comes called "vemlo start"
    way_back=corner
}

settings() { sql "SELECT 'setting', name, value FROM dictionary" "$@" | sort; }
# A line each for a whole database, a setting, a row, a file of an installed version.
assets()
{
    sql "PRAGMA integrity_check; SELECT 'setting', name, value FROM dictionary; SELECT * FROM systemMessages;
        SELECT key, english, french, german, spanish FROM translations"
    (cd "$store" && find . -type f -not -path './.*' -exec sha1sum {} +)
}
take_stock() { assets | sort > $stock; }
gone_or_whole() { [[ -e $store/$system-$1 ]] || removed "$1"; }
removed() { expect test ! -e "$store/$system-$1"; sed -i "/$system-$1\//d" $stock; }
restored_whole()
{
    local now
    now=$(settings)
    [[ $now == "$(grep '^setting|' $stock)" ]] || expect is "$now" "$(settings "$defaults")"
    { grep -v '^setting|' $stock; echo "$now"; } | sort -o $stock
}
intact()
{
    expect is "$(assets | sort | comm -23 $stock - | head -n 3)" "" # what is lost
    [[ ! -e $log ]] || expect is "$(grep -aE 'qrc:|Sanitizer|runtime error:' "$log" | grep -v logInstallFailed)" ""
    expect not called reboot
}
unharmed() { leaves; intact; }

# After a kill: what runs on ends, and the next start shows the versions, of which it offers the
# last one, installs it and ends well. Nothing of what was there is lost.
recovers()
{
    local last
    go_on
    unlock
    has_ended || leaves
    comes job_is_over
    : > "$simulation/record"
    with=(env)
    start
    last=$(find "$store/" -mindepth 1 -maxdepth 1 -type d -name '*-*' -printf '%f\n' | sort | tail -n 1)
    wheel
    await bar
    expect called "vemlo install $last"
    expect is_current "${last#"$system-"}"
    unharmed
}

# What the technician sees at the end. A failure leaves a line in the log of which the bar alone
# knows the words.
says_done() { await bar; expect not logged logInstallFailed; }
says_corrupted() { await bar; expect logged logInstallFailed; }
warned() { grep -aqE '"/usr/local/bin/vemlo" (ended with status|was ended by signal) [1-9]' "$log"; }
texts() { is "$(sql 'SELECT count(*) FROM translations')" "$(sql 'SELECT count(*) FROM translations' "$defaults")"; }
messages() { is "$(sql "SELECT count(*) FROM systemMessages WHERE msg LIKE '$1'")" "$2"; }
