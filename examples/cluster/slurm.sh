#!/usr/bin/env bash
# A batch file in pieces as an array of Slurm's, and their join when all are there:
#
#   slurm.sh FILE PIECES OUT [OPTION OF sbatch...]      as --cpus-per-task=4 --time=2:00:00 --partition=short
#
# A piece uses the cores that it is given. When some fail, the join does not begin; make those again with
# sbatch --array=THOSE, and the join by hand: merlane-batch --join --out OUT OUT/*.piece
set -euo pipefail
(($# >= 3)) || { sed -n '2,7s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2 && exit 1; }

program=$(command -v "${MERLANE_BATCH:-merlane-batch}")
file=$(realpath "$1")
pieces=$2
mkdir -p "$3/told"
out=$(realpath "$3")
shift 3

export program file pieces out
array=$(sbatch --parsable --array="1-$pieces" --job-name=merlane --output="$out/told/%a.txt" "$@" <<'PIECE'
#!/usr/bin/env bash
exec "$program" --piece "$SLURM_ARRAY_TASK_ID/$pieces" --out "$out" "$file"
PIECE
)
sbatch --dependency="afterok:$array" --kill-on-invalid-dep=yes --job-name=merlane-join --output="$out/transcript.txt" "$@" <<'JOIN'
#!/usr/bin/env bash
exec "$program" --join --out "$out" "$out"/*.piece
JOIN
