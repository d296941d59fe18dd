# shellcheck shell=bash disable=SC2034,SC2154
# The words of the fault table: what goes wrong, the roads of a technician's touches, the moments of
# a kill, and what has to hold. Sourced in the dispenser, after screen.sh.
merivon=/opt/Merivon
store=$merivon/Versions
simulation=$merivon/Simulation
database=$merivon/Database/merivon_database_enc.db
defaults=$store/Merivon-current/Database/merivon_defaults.db
stick=/media/technician/STICK
backup=/media/technician/BACKUP
package=$stick/updates/quillmark-$system-1.04.00.tar.gz
older_package=$backup/quillmark-$system-1.01.00.tar.gz
image=$stick/MerivonMFV_V2.16.hex
stock=/tmp/stock    # what was there before, and has to be there afterwards
with=()             # what stands before the program's name
output='> "$log" 2>&1'
updater=none
way_back=corner     # the control that leads back from the panel in sight
patience=30         # seconds

# --- Questions.

record() { command cut -f 2 "$simulation/record"; }
calls() { record | grep -c "^$1"; }
called() { record | grep -q "^$1"; }
sql() { printf "PRAGMA key='d8pantry%%';\n.timeout 20000\n%s;\n" "$1" | sqlcipher -bail "${2-$database}" 2>&1; }
logged() { grep -aqF -- "$1" "$log"; }
current() { [[ $(readlink "$store/Merivon-current") == "$system-$1" ]]; }
stored() { [[ -f $store/$system-$1/Database/merivon_defaults.db && -d $store/$system-$1/ServiceUI/Scripts ]]; }
not() { ! "$@"; }
is() { [[ $1 == "$2" ]]; }
times() { is "$(calls "vemlo $1")" "$2"; }
runs() { kill -0 "$updater" 2> /dev/null; }
on_advanced() { offers "wheel remove" && offers corner; }

# comes CONDITION...: as await, but of what is not on the screen.
comes()
{
    local end=$((SECONDS + patience))
    until "$@"; do
        ((SECONDS < end)) || fail "$@"
        sleep 0.02
    done
}

# --- What goes wrong.

# fault SUBCOMMAND FAULT [VALUE]: of the control command or of reboot.
declare -A usual=([delay]=1.5 [fail]=3 [die]=KILL [flood]=20 [error]="out of order")
fault() { echo "$1 $2 ${3-${usual[$2]-}}" >> "$simulation/faults"; }

# hold WHAT [before|after [PATTERN]]: a subcommand of the control command, or a tool that it or the
# updater's shell calls with such arguments, waits before or after its work until told to go on.
hold()
{
    touch /tmp/hold
    case $1 in
    import | install | firmware | start | stop) held=$1; fault "$1" hold /tmp/hold ;;
    *)
        echo "${2-before} ${3-*}" > /tmp/hold
        cp "$here/held_tool" "/usr/local/bin/$1"
        ;;
    esac
}
is_held() { [[ -e /tmp/reached ]] || { [[ -n ${held-} ]] && called "vemlo $held"; }; }
go_on() { /bin/rm -f /tmp/hold /tmp/reached "$simulation/faults" /usr/local/bin/{tar,mv,cp,ln,rm}; }

# lock writer|reader|all SECONDS: another program that has the shared database in use.
lock()
{
    local -A how=([writer]="BEGIN IMMEDIATE" [reader]="BEGIN; SELECT count(*) FROM dictionary" [all]="BEGIN EXCLUSIVE")
    rm -f /tmp/locked
    sql "${how[$1]};
.shell touch /tmp/locked; sleep $2
COMMIT" > /dev/null &
    locker=$!
    comes test -e /tmp/locked
}

# A disk of a megabyte with no room left, under the folder named.
fill_disk()
{
    cp -a "$1" /run/small/ && rm -rf "$1" && ln -s "/run/small/${1##*/}" "$1"
    dd if=/dev/zero of=/run/small/fill bs=4096 2> /dev/null
    true
}
# spoil WHAT: the shared database.
spoil()
{
    case $1 in
    missing) rm "$database" ;;
    empty) : > "$database" ;;
    damaged) damage "$database" 5 ;;
    foreign) rm "$database" && sqlcipher "$database" "PRAGMA key='x'; CREATE TABLE dictionary(id, name, value);" ;;
    folder) rm "$database" && mkdir "$database" ;;
    short) truncate -s 3000 "$database" ;;
    unreadable) chmod 0 "$database" ;;
    without-tables) sql "DROP TABLE dictionary; DROP TABLE translations; DROP TABLE systemMessages" ;;
    esac
}
damage() { printf 'damaged page' | dd of="$1" bs=1 seek=$(($2 * 1024 + 100)) conv=notrunc 2> /dev/null; }
setting() { sql "UPDATE dictionary SET value='$2' WHERE name='$1'" > /dev/null; take_stock; }
pull() { rm -rf /media/technician/*/*; }
declare -A hostile=([quote]="x' --" [statement]="';DELETE FROM dictionary;--" [shell]='$(touch owned);`touch owned`&'
    [markup]='<h1>x<img src=x>' [percent]='%1%2%n' [dash]='-rf ..' [line]=$'a\nb' [long]="$(printf 'x%.0s' {1..200})"
    [right-to-left]=$'\u202eabc\u05d0' [bytes]=$'\xff\xfe')
named() { mkdir /tmp/pocket; mv "$package" /tmp/pocket/kept; pull; mv /tmp/pocket/kept "$stick/quillmark-${hostile[$1]}-1.tar.gz"; }
link_everywhere()
{
    local each
    ln -s / /proc /sys .. . "$stick"
    for each in {0..9}; do
        mkdir "$stick/folder$each" && ln -s "$stick"/folder{0..9} "$stick/folder$each"
    done
}
already_imported() { vemlo import "$package" && take_stock; }
cut_short() { local part; part=$(head -c 300 "$1" | base64) && base64 -d <<< "$part" > "$1"; }
offer_image() { rm "$older_package"; cp "$image" "$backup"; }
slow_media() { with+=(env "SLOW_FOLDER=/media/technician" "LD_PRELOAD=${program%/*}/benchmarks/slow_folder.so"); }
many_packages() { (cd "$stick/updates" && seq -f 'quillmark-many-%g.tar.gz' "$1" | xargs touch); }
crowd() { mkdir -p "$stick/many" && (cd "$stick/many" && seq -f 'file%g.txt' "$1" | xargs touch); }
declare -A clocks=([back]=-1d [past]=-20y [future]=+20y)
clock() { echo "${clocks[$1]-+0}" > /tmp/clock.new && mv /tmp/clock.new /tmp/clock; }
settable_clock()
{
    clock now
    with+=(env "LD_PRELOAD=$(ls /usr/lib/*/faketime/libfaketime.so.1)" FAKETIME_TIMESTAMP_FILE=/tmp/clock
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
    with+=(env "QT_QPA_GENERIC_PLUGINS=tuiotouch:udp=$fingers" QT_TUIOTOUCH_DELIVER_WITHOUT_FOCUS=1)
}

# --- Roads. Each ends with its last touch.

begin()
{
    eval '"${with[@]}" "$program" '"$output &"
    updater=$!
}
start() { begin; await offers advanced; }
open_update() { press update; way_back=back; }
open_advanced() { press advanced; way_back=corner; await on_advanced; }
scan() { open_update; await offers "${1-first entry}"; }
choose() { press "$1"; await offers install; }
update() { scan "third entry"; choose "third entry"; press install; }
flash() { scan; choose "first entry"; press install; }
install() { open_advanced; press "wheel install"; }
flash_stored() { open_advanced; press "firmware install"; }
ask_removal() { open_advanced; press "wheel up"; press "wheel remove"; await offers yes; }
remove() { ask_removal; press yes; }
enter_row() { local shown; shown=$(look); press "first row"; await other_than "$shown"; }
choose_file()
{
    open_advanced
    press file
    await refuses import
    xdotool mousemove 0 0
    grab
    enter_row # the medium, then the file on it
    enter_row
    await offers import
}
import_file() { choose_file; press import; }
restart() { press corner; }
restore() { "${program%/*}/tests/app/logs" restore > "$log" 2>&1 & updater=$!; }
taps() { point "$2" && xdotool mousemove "$x" "$y" click --repeat "$1" --delay 150 1; }
everywhere() { local each; for each; do taps 2 "$each"; done; }
# While a message on the whole screen is there, and while it fades.
tap_message()
{
    local end=$((SECONDS + patience))
    see full_message
    until grab && no_message; do
        ((SECONDS < end)) || fail an end of the message
        taps 1 "$1"
    done
}
# Two fingers at once, on two controls; then none.
fingers()
{
    local at=()
    for each; do point "$each"; at+=("$x" "$y"); done
    "$here/touch" "$fingers" "$width" "$height" "${at[@]}"
    sleep 0.1
    "$here/touch" "$fingers" "$width" "$height"
}

# --- Moments.

journal() { comes test -s "$database-journal"; }
begun() { comes called "vemlo $1"; }
line() { comes logged "$1"; }
reach() { comes is_held; }
see() { await "$@"; }
settle() { await no_message; sleep 0.5; } # the end of its fade cannot be seen, but takes touches

kill-updater()
{
    kill -KILL "$updater"
    wait "$updater" 2> /dev/null
    updater=none
}
of_control() { pgrep -f '/usr/local/bin/(vemlo|tar|mv|cp|ln|rm)'; }
kill-control() { of_control | xargs -r kill -KILL; go_on; }
finishes() { go_on; comes job_is_over; }
kill_locker() { pkill -KILL -P "$locker"; }
# The player outside takes all of the dispenser away.
cut() { touch /tmp/cut; sleep infinity; }
quit_by_bus() { dbus-send --type=method_call --dest=org.merivon.softwareUpdater / org.merivon.softwareUpdater.quitApp; }
quit_by() { kill -s "$1" "$updater"; wait "$updater" 2> /dev/null; updater=none; }

# --- What has to hold.

ends()
{
    timeout "$patience" tail --pid "$updater" -f /dev/null || fail the end of the updater
    wait "$updater"
    expect is $? 0
    updater=none
}

# By "Back" and "Restart Merivon", tapped until they are taken.
leaves()
{
    local end=$((SECONDS + patience))
    while runs; do
        ((SECONDS < end)) || fail "Restart Merivon" ends the updater
        [[ $way_back == corner ]] || press "$way_back"
        press corner
        sleep 0.1
    done
    ends
    comes called "vemlo start"
    way_back=corner
}

job_is_over() { ! of_control > /dev/null; }
installed_files() { (cd "$store" && find . -type f -not -path './.*' -exec sha1sum {} + | sort -k 2); }
settings() { sql "SELECT name, value FROM dictionary" "$@" | sort; }
rows() { sql "SELECT key, english, french, german, spanish FROM translations" | sort; sql "SELECT * FROM systemMessages" | sort; }
take_stock()
{
    mkdir -p $stock
    settings > $stock/settings
    rows | sort > $stock/rows
    installed_files > $stock/installed_files
}
gone_or_whole() { [[ -e $store/$system-$1 ]] || removed "$1"; }
removed() { expect test ! -e "$store/$system-$1"; sed -i "/$system-$1\//d" $stock/installed_files; }
missing() { "$1" | sort | comm -23 <(sort "$stock/$1") - | head -n 3; }

intact()
{
    local each
    expect is "$(sql 'PRAGMA integrity_check')" ok
    for each in settings rows installed_files; do
        expect is "$(missing $each)" ""
    done
    [[ ! -e $log ]] || expect is "$(grep -aE 'qrc:|Sanitizer|runtime error:' "$log" | grep -v logInstallFailed)" ""
    expect not called reboot
}
unharmed() { leaves; intact; }
restored_whole() { local now; now=$(settings); expect eval '[[ $now == "$(< $stock/settings)" || $now == "$(settings "$defaults")" ]]'; settings > $stock/settings; }

# After a kill: what runs on ends, and the next start shows the versions, of which it offers the
# last one, installs it and ends well. Nothing of what was there is lost.
recovers()
{
    local last
    go_on
    [[ -z ${locker-} ]] || kill_locker
    ! runs || leaves
    comes job_is_over
    : > "$simulation/record"
    with=()
    start
    last=$(find "$store/" -mindepth 1 -maxdepth 1 -type d -name '*-*' -printf '%f\n' | sort | tail -n 1)
    install
    await bar
    expect called "vemlo install $last"
    expect current "${last#"$system-"}"
    unharmed
}

# What the technician sees at the end. A failure leaves a line in the log of which the bar alone
# knows the words.
says_done() { await bar; expect not logged logInstallFailed; }
says_corrupted() { await bar; expect logged logInstallFailed; }
warned() { grep -aqE '"/usr/local/bin/vemlo" (ended with status|was ended by signal) [1-9]' "$log"; }
texts() { is "$(sql 'SELECT count(*) FROM translations')" "$(sql 'SELECT count(*) FROM translations' "$defaults")"; }
messages() { is "$(sql "SELECT count(*) FROM systemMessages WHERE msg LIKE '$1'")" "$2"; }
