# What the stand-ins share: the record of their calls and the faults that they can be told to have.
simulation=/opt/Merivon/Simulation

# record PROGRAM ARG...: one line a call, whatever the arguments hold.
record()
{
    local line=$1 stamp micros=${EPOCHREALTIME#*.} argument
    shift
    for argument; do
        printf -v argument %q "$argument"
        line+=" $argument"
    done
    printf -v stamp '%(%Y-%m-%dT%H:%M:%S)T' "${EPOCHREALTIME%.*}"
    # Calls may overlap, and a long line is not one write.
    flock "$simulation/record" printf '%s.%s\t%s\n' "$stamp" "${micros:0:3}" "$line" \
        >> "$simulation/record"
}

# has_faults SUBCOMMAND: does what the rules of the faults file say for it, in their order; comes
# back unless a rule ends the program.
has_faults()
{
    local wanted=$1 subcommand fault value
    [[ -r $simulation/faults ]] || return 0
    while read -r subcommand fault value <&8 || [[ -n $subcommand ]]; do
        [[ $subcommand != "$wanted" ]] || misbehave "$fault" "$value"
        subcommand=
    done 8< "$simulation/faults"
}

misbehave()
{
    local fault=$1 value=$2
    case $fault in
    delay) sleep "$value" ;;
    error)
        echo "Error: ${value:-told to fail}"
        exit 1
        ;;
    fail) exit "$value" ;;
    hang) exec sleep infinity ;;
    die) kill -s "$value" $$ ;;
    silent) exec > /dev/null ;;
    hold) while [[ -e $value ]]; do sleep 0.02; done ;;
    nul) printf 'before\0between\0after\n' ;;
    flood) yes "a line of a very long output, sixty-four bytes with its line end" |
        head -c "${value}M" ;;
    *) echo "stand-in: no such fault: $fault" >&2 ;;
    esac
}
