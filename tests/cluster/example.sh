#!/usr/bin/env bash
# The example for a cluster, shared by one of its ways, gives the files and the transcript of the run that is not shared.
#
#   example.sh MERLANE-BATCH WAY PIECES      WAY is a script of examples/cluster
set -euo pipefail
export MERLANE_BATCH=$1
way=$2
pieces=$3
examples=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../../examples/cluster")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir out
"$MERLANE_BATCH" --out "$work/out" "$examples/bootstrap.batch" >whole.txt
mv out whole

"$examples/$way" "$examples/bootstrap.batch" "$pieces" "$work/out"
cmp whole.txt out/transcript.txt
rm -r out/told out/*.piece out/transcript.txt
diff -r whole out
