# check SENTENCE COMMAND...: the command has to succeed. The script ends with `exit $failed`.
failed=0
check()
{
    local sentence=$1
    shift
    if "$@"; then
        echo "ok: $sentence"
    else
        echo "FAILED: $sentence"
        failed=1
    fi
}

same() { [[ $1 == "$2" ]] || { printf '  is:        %q\n  should be: %q\n' "$1" "$2"; return 1; }; }
