#!/usr/bin/env bash
# Compares the sample servers with the sample repository once with this system's program and once with the Windows one
# under Wine, both against one simulator of this system. Everything that they print and write must be the same, byte for
# byte, once line ends and separators of paths are the same.
# Usage: tests/windows/same_reports.sh FOLDER-OF-THIS-SYSTEMS-PROGRAMS FOLDER-OF-THE-WINDOWS-PROGRAMS
source "$(dirname "$0")/lib.sh"

# Ports of the system's choice.
start_simulator < <(sed -e 's/"port": 8443/"port": 0/' -e "s#\"servers/#\"$root/samples/servers/#" "$root/samples/fleet.json")
targets=$(sed -n 's#^[^ ]* https://#admin:Sample-Passw0rd@#p' ready | paste -sd,)

# NAME PROGRAM...: runs it with this name for its output.
compare() {
  local name=$1 status=0
  shift
  "$@" update compare --bmc "$targets" --cacert ca.pem --dir packages --output out --pattern '.*' \
    >"$name.out" 2>"$name.err" </dev/null || status=$?
  [ "$status" -eq 0 ] || fail "$name ended with $status: $(cat "$name.err" "$name.out")"
  mv out "$name"
}
compare own "$own/korvan"
compare windows wine "$windows/korvan.exe"

# Line ends; the drive that stands for this system's root; separators, in JSON with a backslash in front.
plain() { tr -d '\r' <"$1" | sed -e 's#Z:\(\\\\\|\\\|/\)#/#g' -e 's#\\\\#/#g' -e 's#\\/#/#g' -e 's#\\#/#g'; }

diff <(cd own && find . | sort) <(cd windows && find . | sort) || fail 'other files were written'
compared=0
while read -r file; do
  cmp <(plain "own/$file") <(plain "windows/$file") || { diff <(plain "own/$file") <(plain "windows/$file") | head; fail "$file differs"; }
  [ "$(wc -c <"own/$file")" -gt 100 ] || fail "$file is hardly a report"
  compared=$((compared + 1))
done < <(cd own && find . -type f ! -name korvan.log | sort)
cmp <(plain own.out) <(plain windows.out) || fail 'the tables differ'
grep -q 'Compare Result' own.out || fail 'no table was printed'
[ "$compared" -ge 31 ] || fail "only $compared files were compared"
printf 'the table and %d files of %d targets are the same\n' "$compared" "$(find own -maxdepth 1 -name 'SUCCESS-*' | wc -l)"
