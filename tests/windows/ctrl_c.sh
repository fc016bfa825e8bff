#!/usr/bin/env bash
# Types at korvan.exe on a terminal under Wine: Ctrl-C ends the run in good order, also at a question; a password is asked
# for and not shown. The servers are simulated by this system's program.
# Usage: tests/windows/ctrl_c.sh FOLDER-OF-THIS-SYSTEMS-PROGRAMS FOLDER-OF-THE-WINDOWS-PROGRAMS
source "$(dirname "$0")/lib.sh"

start_simulator <<END
{ "defaults": { "user": "admin", "password": "Sample-Passw0rd", "port": 0, "address": "127.0.0.1" },
  "controllers": [
    { "name": "good", "folder": "$root/samples/servers/rack-a" },
    { "name": "silent", "folder": "$root/samples/servers/rack-b", "faults": [ { "path": ".*", "action": "hang" } ] } ] }
END
place() { sed -n "s#^$1 https://##p" ready; }

# The terminal's text without its control sequences; it draws a blank as a step to the right.
shown() { sed -e 's/\x1b\[[0-9]*C/ /g' -e 's/\x1b\[[?0-9;]*[A-Za-z]//g' screen 2>/dev/null; }
wait_for() { # TEXT
  for _ in $(seq 200); do
    [[ $(shown) == *"$1"* ]] && return 0
    sleep 0.1
  done
  return 1
}
# The emulated terminal shows what is typed until the program's console has taken it over.
asked() { wait_for "Password for $(place good | tr : _): " && sleep 0.5; }
# Runs the program with these words on a terminal that reads what this script writes to the descriptor `keys`; what the
# terminal shows goes to "screen", the exit status to "status". While the program has not taken the console over, Ctrl-C
# interrupts the shell around it as well: the trap keeps that shell alive to write the status.
start() { # WORDS
  rm -rf screen status out keys_pipe
  mkfifo keys_pipe
  local run="wine '$windows/korvan.exe' update compare --cacert ca.pem --dir packages --output out $*"
  (exec {stop}>&-; SHELL=/bin/sh exec script -qfc "trap : INT; $run; echo \$? >status" screen <keys_pipe >/dev/null) &
  terminal=$!
  exec {keys}>keys_pipe
}
ended() { # STATUS
  for _ in $(seq 200); do
    [ -s status ] && break
    sleep 0.1
  done
  exec {keys}>&-
  wait "$terminal" || true
  [ "$(cat status 2>/dev/null)" = "$1" ] || fail "status $(cat status 2>/dev/null) instead of $1: $(shown | tail -c 2000)"
}

start --bmc "admin:Sample-Passw0rd@$(place silent),admin:Sample-Passw0rd@$(place silent | sed s/127.0.0.1/localhost/)" --parallel 1 --log 4
wait_for 'running: 127.0.0.1' || fail "the run did not start: $(shown | tail -c 2000)"
printf '\003' >&"$keys"
ended 59
[ -d out/FAILURE-* ] || fail 'the interrupted target left no folder'
printf 'Ctrl-C: the run ended in good order, status 59\n'

start --bmc "admin@$(place good)"
asked || fail 'no password was asked for'
printf 'Sample-Passw0rd\r' >&"$keys"
ended 0
[[ $(shown | tail -n +2) != *Sample-Passw0rd* ]] || fail "the password was shown: $(shown)"
printf 'password: asked for, not shown, status 0\n'

start --bmc "admin@$(place good)"
asked || fail 'no password was asked for'
printf '\003' >&"$keys"
ended 47
[ ! -e out ] || fail 'a question that was broken off left a folder'
printf 'Ctrl-C at the question: status 47\n'
