#!/usr/bin/env bash
# run_conversation_test.sh CONVERSATION_BINARY CASE
# Runs the conversation example once or a few times and checks what a person would look for.
set -u

binary=$1
name=$2
directory=$(mktemp -d) || exit 1
trap 'rm -rf "$directory"' EXIT
cd "$directory" || exit 1

readonly every_command="NULL SYN ACK AUTH_REQ AUTH_RSP WAIT DATA CSTOP SSTOP BINGO
AUTH_REFRESH_REQ AUTH_REFRESH_NOTIFY ROUTE_CHANGE"

fail() {
    printf 'FAILED %s: %s\n' "$name" "$*" >&2
    printf -- '--- stdout\n' >&2
    cat out >&2
    printf -- '--- stderr\n' >&2
    cat err >&2
    exit 1
}

# run CODE OPTION...: the program ends with CODE, within 20 seconds. Its output goes through a pipe
# that every process it starts holds open: one that stays behind would keep `cat` waiting, until the
# time limit of the test.
run() {
    local expected=$1 code
    shift
    timeout 20 "$binary" "$@" 2>err </dev/null | cat >out
    code=${PIPESTATUS[0]}
    [ "$code" -eq "$expected" ] || fail "exit code $code instead of $expected with options: $*"
}

quick() { run "$1" --queue 1 --pause 1 "${@:2}"; }

expect() { grep -q -E -e "$2" "$1" || fail "no line of $1 matches: $2"; }
expect_none() { ! grep -q -E -e "$2" "$1" || fail "a line of $1 matches: $2"; }
expect_empty() { [ ! -s "$1" ] || fail "$1 is not empty"; }

# frame_flavours DIRECTION: the flavours of the frames in this direction, each once.
frame_flavours() {
    grep -E "^ *[0-9]+  $1  " out | awk '{print $7}' | sort -u | tr '\n' ' '
}

# table_bytes DIRECTION: the bytes that the table sums up for this direction.
table_bytes() { awk -v direction="$1" 'index($0, "  " direction) == 1 && $4 == "all" {print $6}' out; }

# expect_complete: the run says that it went well, and shows all that it should have done.
expect_complete() {
    local command
    expect_empty err
    for command in $every_command; do
        expect out "^ *[0-9]+  (client -> server|server -> client)  $command "
        expect out "^  (client -> server|server -> client)  (varint|fixed )  $command  *[1-9][0-9]*  *[1-9][0-9]*$"
    done
    expect out '^ *[0-9]+  client -> server  DATA .*: proof of the secret$'
    expect out '^ *[0-9]+  server -> client  DATA .*: proof of the secret$'
    expect out '^Both ends proved the same secret; its fingerprint is [0-9a-f]{16}\.$'
    expect out '^Outcome: complete\. [1-9][0-9]* frames .*both ends agree'
    # Every line of the list is whole: a number, a direction, a command, a size, a flavour.
    awk '/^  #  direction/ {list = 1; next} /^$/ {list = 0}
         list && !/^ *[0-9]+  (client -> server|server -> client)  [A-Z_]+ +[0-9]+  (varint|fixed) / {
             exit 1
         }' out || fail "a line of the list is garbled"
    [ "$(table_bytes 'client -> server')" -gt 20000 ] || fail "the client sent too little"
    [ "$(table_bytes 'server -> client')" -gt 3000 ] || fail "the server sent too little"
}

# expect_failure SIDE CODE TEXT: the first failure is this end's and says this, advice follows, and
# the outcome on stdout agrees with the exit code.
expect_failure() {
    head -n 1 err | grep -q -E -e "^conversation: $1: .*$3" ||
        fail "the first line of err is not a failure of the $1 that says: $3"
    sed -n 2p err | grep -q -E '^  [A-Z].*\.$' || fail "no advice follows"
    expect out "^Outcome: failed \(exit code $2\): "
    expect_none out '^Outcome: complete'
}

default_run() {
    run 0
    expect_complete
    expect out '^  client -> server: [1-9][0-9]* bytes, written in [1-9][0-9]{2,} pieces'
    expect out '^    read in [1-9][0-9]{2,} pieces of 1 to [0-9]+; [1-9][0-9]* of [1-9][0-9]* frames'
    [ "$(grep -c -E '  WAIT .*\[#*\.*\] place [1-5] of 5,' out)" -eq 5 ] || fail "not 5 queue notices"
}

flavour_mixed() {
    quick 0 --flavour mixed
    expect_complete
    [ "$(frame_flavours 'client -> server')" = "varint " ] || fail "the client is not all varint"
    [ "$(frame_flavours 'server -> client')" = "fixed " ] || fail "the server is not all fixed"
}

flavour_varint() {
    quick 0 --flavour varint
    expect_complete
    [ "$(frame_flavours 'client -> server')" = "varint " ] || fail "the client is not all varint"
    [ "$(frame_flavours 'server -> client')" = "varint " ] || fail "the server is not all varint"
}

flavour_fixed() {
    quick 0 --flavour fixed
    expect_complete
    [ "$(frame_flavours 'client -> server')" = "fixed " ] || fail "the client is not all fixed"
    [ "$(frame_flavours 'server -> client')" = "fixed " ] || fail "the server is not all fixed"
}

dump() {
    quick 0 --dump
    expect out '^      \[stHead\]$'
    expect out '^              \[wCommand\] 4097$'
    expect out '\[szDH_p\] 64: 0xc6 0x30 '
    expect out '\[szSTRING\] "player\.one"$'
    expect out '\[dwCompressLimit\] 1024$'
    expect out '\[szXQuorvaTokenVersion\] "V1"$'
    expect out '\[szServiceName\] "match-maker"$'
    expect out '^      body of 20000 bytes:$'
    expect out '^          and 19936 more$'
    expect out '^Outcome: complete'
    quick 0
    expect_none out '\[wCommand\]'
}

save() {
    local direction file side
    quick 0 --save kept
    for side in client server; do
        file=kept.$side
        direction='client -> server'
        [ "$side" = client ] || direction='server -> client'
        [ "$(stat -c %s "$file")" = "$(table_bytes "$direction")" ] ||
            fail "$file has another size than the table says"
    done
    # Each file begins with a whole frame of its side's flavour.
    [ "$(od -An -tx1 -N1 kept.client)" = " aa" ] || fail "kept.client does not begin with aa"
    [ "$(od -An -tx1 -N1 kept.server)" = " 99" ] || fail "kept.server does not begin with 99"
}

save_refuses_to_overwrite() {
    printf 'precious' >kept.server
    quick 4 --save kept
    expect err '^conversation: kept\.server exists and is not overwritten$'
    expect err '^  .*--force'
    [ "$(cat kept.server)" = precious ] || fail "kept.server was overwritten"
    [ ! -e kept.client ] || fail "kept.client was left behind"
    expect_empty out
    quick 0 --save kept --force
    [ "$(stat -c %s kept.server)" = "$(table_bytes 'server -> client')" ] ||
        fail "--force did not overwrite"
}

save_into_missing_folder() {
    quick 4 --save missing/kept
    expect err '^conversation: making missing/kept\.client: No such file or directory$'
}

queue() {
    run 0 --queue 0
    expect_none out '  WAIT  '
    expect out '^Outcome: complete'
    run 0 --queue 12 --pause 1
    [ "$(grep -c -E '^ *[0-9]+  server -> client  WAIT ' out)" -eq 12 ] || fail "not 12 notices"
    expect out '\[#*\.*\] place 12 of 12,'
    expect out '\[#*\.*\] place 1 of 12,'
}

closed_streams() {
    local code
    timeout 20 "$binary" --queue 1 --pause 1 <&- >out 2>err || fail "fails with stdin closed"
    expect_complete
    timeout 20 "$binary" --queue 1 --pause 1 <&- >&- 2>&- || fail "fails with all streams closed"
    timeout 20 "$binary" --fault cut <&- >&- 2>&-
    code=$?
    [ "$code" -eq 5 ] || fail "exit code $code instead of 5 with all streams closed"
}

reader_leaves() {
    # `true` reads nothing, and the sleep lets it be gone before the first line comes.
    { sleep 0.2; timeout 20 "$binary" --queue 1 --pause 1 2>err; echo $? >code; } | true
    : >out
    [ "$(cat code)" -eq 1 ] || fail "exit code $(cat code) instead of 1 with no reader"
    expect err '^conversation: stdout took no more output$'
}

full_disk() {
    [ -w /dev/full ] || fail "this test needs /dev/full"
    : >out
    timeout 20 "$binary" --queue 1 --pause 1 >/dev/full 2>err
    local code=$?
    [ "$code" -eq 1 ] || fail "exit code $code instead of 1"
    expect err '^conversation: stdout took no more output$'
}

fault_cut() {
    quick 5 --fault cut
    expect_failure client 5 'ended inside a frame, with [0-9]+ of [0-9]+ bytes there, .*, after 1 frame$'
    expect err '^conversation: then the server: was ended by signal 9 '
    expect_none out '  AUTH_RSP  '
}

fault_garbage() {
    quick 6 --fault garbage
    expect_failure server 6 'byte 0x55 came where a frame begins .*, after 1 frame$'
    expect_none out '  AUTH_REQ  '
}

fault_oversize() {
    quick 7 --fault oversize
    expect_failure server 7 'announces 2147483647 bytes, above the largest of [0-9]+,'
    expect_none out '  AUTH_REQ  '
}

fault_short() {
    quick 6 --fault short
    expect_failure server 6 'announces 4 bytes, which is less than its envelope,'
    expect_none out '  AUTH_REQ  '
}

fault_silence() {
    local begin=$SECONDS
    quick 9 --fault silence --timeout 1
    [ $((SECONDS - begin)) -le 5 ] || fail "gave up late"
    expect_failure client 9 'AUTH_RSP did not come from the server within the time-out'
}

fault_damage() {
    quick 8 --fault damage
    expect_failure client 8 'BRX_ERR_BAD_TYPE_ID \(-35\)'
    expect_none out '  BINGO  '
}

fault_repeat() {
    quick 11 --fault repeat
    expect_failure client 11 'a BINGO frame has sequence number [0-9]+ where [0-9]+ is next'
}

fault_secret() {
    quick 10 --fault secret
    expect_failure server 10 'does not fit this end.s secret'
    expect_none out 'Both ends proved'
}

port_in_use() {
    local port="" first
    # A run that takes a while holds the port that the second run asks for.
    timeout 20 "$binary" --queue 15 --pause 200 >first_out 2>first_err </dev/null &
    first=$!
    for _ in $(seq 50); do
        port=$(sed -n 's/^.* talk over 127\.0\.0\.1:\([0-9]*\)$/\1/p' first_out)
        { [ -z "$port" ] && kill -0 "$first" 2>/dev/null; } || break
        sleep 0.1
    done
    : >out
    : >err
    [ -n "$port" ] || fail "the first run names no port"
    quick 3 --port "$port"
    expect err "^conversation: port $port of 127\.0\.0\.1 is in use by another program$"
    expect err '^  .*--port'
    expect_empty out
    wait "$first" || fail "the first run was disturbed"
    # Free again, and at once.
    quick 0 --port "$port"
    expect out ":$port\$"
}

bad_options() {
    run 2 --no-such-option
    expect err '--no-such-option'
    run 2 --flavour sweet
    expect err '--flavour: sweet not in'
    run 2 --port 70000
    expect err '--port: Value 70000 not in range'
    run 2 --queue -1
    expect err '--queue'
    run 2 --fault none
    expect err '--fault: there is no fault called none'
    run 2 --pause 2000 --timeout 1
    expect err '--pause: must be shorter than --timeout'
    run 2 --force
    expect err '--force requires --save'
    run 2 superfluous
    expect err 'superfluous'
    expect_empty out
}

help() {
    local option code
    run 0 --help
    expect_empty err
    for option in flavour dump save force port queue pause timeout fault help; do
        expect out "^  (-h,)?--$option "
    done
    for option in cut garbage oversize short silence damage repeat secret; do
        expect out "^  $option  .*\(exit code [0-9]+\)$"
    done
    for code in 0 1 2 3 4 5 6 7 8 9 10 11; do
        expect out "^  $code  +[a-z]"
    done
    expect out '512 bits'
}

: >out
: >err
case "$(type -t "$name")" in
    function) "$name" ;;
    *)
        printf 'no case called %s\n' "$name" >&2
        exit 2
        ;;
esac
