#!/usr/bin/env bash
# Times, in one run over the same folder of 100,000 files, a bare loop of no-replace renames
# (bench_bare_rename), `quillet apply` adding a suffix to every name, `quillet undo` taking it
# off again, and mmv doing the same rename; each whole process, best of three. Prints the
# ratios to the bare loop and the peak memory of `quillet apply`.
#   bench/apply-vs-mmv.sh [BUILD_DIR] [FOLDER] [COUNT]
set -euo pipefail
build=$(realpath "${1:-build/dev}")
folder=${2:-/tmp/quillet-bench-rename}
count=${3:-100000}
command -v mmv >/dev/null || { apt-get install -y -qq mmv >/dev/null 2>&1 || sudo apt-get install -y -qq mmv >/dev/null; }
quillet=$build/src/cli/quillet
bare=$build/bench/bench_bare_rename
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if [ ! -f "$folder/.count-$count" ]; then
    rm -rf "$folder"
    mkdir -p "$folder"
    (cd "$folder" && seq -f "file%06g.dat" 0 $((count - 1)) | xargs touch && touch ".count-$count")
fi
"$bare" "$folder" "_x" --back >/dev/null || true  # a run stopped half way leaves suffixes
cat >"$work/add.frc" <<'FRC'
[CommandList]
CommandListCount=1
1=CMD_N1012024
[CMD_N1012024]
CMDid=N101
N1_AddStr=_x
N1_AddRight=1
FRC
settings=$work/cfg/QuilletPro.ini
ms() { echo $(( ($2 - $1) / 1000000 )); }
best_bare=999999; best_apply=999999; best_undo=999999; best_mmv=999999; peak=0
for _ in 1 2 3; do
    s=$(date +%s%N); "$bare" "$folder" "_x" >/dev/null; e=$(date +%s%N)
    t=$(ms "$s" "$e"); (( t < best_bare )) && best_bare=$t
    "$bare" "$folder" "_x" --back >/dev/null

    s=$(date +%s%N)
    /usr/bin/time -f "%M" -o "$work/rss" "$quillet" --settings "$settings" apply --simple --recursive --no-folder-rows \
        --commands "$work/add.frc" "$folder" >/dev/null 2>"$work/apply.err"
    e=$(date +%s%N)
    t=$(ms "$s" "$e"); (( t < best_apply )) && best_apply=$t
    kb=$(tail -1 "$work/rss"); (( kb > peak )) && peak=$kb
    s=$(date +%s%N); "$quillet" --settings "$settings" undo >/dev/null 2>"$work/undo.err"; e=$(date +%s%N)
    t=$(ms "$s" "$e"); (( t < best_undo )) && best_undo=$t

    s=$(date +%s%N); (cd "$folder" && mmv '*.dat' '#1.dat_x'); e=$(date +%s%N)
    t=$(ms "$s" "$e"); (( t < best_mmv )) && best_mmv=$t
    "$bare" "$folder" "_x" --back >/dev/null
done
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }
echo "files: $count"
echo "bare renameat2 loop: ${best_bare} ms"
echo "quillet apply:       ${best_apply} ms  ($(ratio "$best_apply" "$best_bare")x bare, peak RSS $((peak / 1024)) MB)"
echo "quillet undo:        ${best_undo} ms  ($(ratio "$best_undo" "$best_bare")x bare)"
echo "mmv:                 ${best_mmv} ms  ($(ratio "$best_mmv" "$best_bare")x bare)"
