#!/usr/bin/env bash
# A batch file in pieces with GNU parallel, here or on several computers that see the same folder:
#
#   parallel.sh FILE PIECES OUT [OPTION OF parallel...]      as --sshlogin one,two,three
#
# A piece uses all cores, so each computer makes one at a time. What has been made stays when this is interrupted, and
# is not made again. Pieces and files of the run come to OUT, what each piece told to OUT/told.
set -euo pipefail
(($# >= 3)) || { sed -n '2,7s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2 && exit 1; }

program=$(command -v "${MERLANE_BATCH:-merlane-batch}")
file=$(realpath "$1")
pieces=$2
mkdir -p "$3/told"
out=$(realpath "$3")
shift 3

export program file pieces out
make_piece() {
  "$program" --piece "$1/$pieces" --out "$out" "$file" >"$out/told/$1.txt"
}
export -f make_piece

seq "$pieces" | parallel --jobs 1 --env program --env file --env pieces --env out --env make_piece \
  --joblog "$out/told/log" --resume-failed --halt soon,fail=1 "$@" make_piece {}
"$program" --join --out "$out" "$out"/*.piece >"$out/transcript.txt"
