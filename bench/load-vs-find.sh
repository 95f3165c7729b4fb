#!/usr/bin/env bash
# Times a recursive load of 100,000 files in 1,000 folders against find(1) doing the
# same stats, best of five warm runs each. The tree is made once and kept, because ext4
# creates files slowly for a while after a large delete.
#   bench/load-vs-find.sh [BUILD_DIR] [TREE_DIR]
set -euo pipefail
build=${1:-build/dev}
tree=${2:-/tmp/quillet-bench-tree}
if [ ! -f "$tree/.complete" ]; then
    rm -rf "$tree"
    mkdir -p "$tree"
    for d in $(seq -w 0 999); do
        mkdir "$tree/dir$d"
        (cd "$tree/dir$d" && touch $(seq -f "file%03g.dat" 0 99))
    done
    touch "$tree/.complete"
fi
best() {  # best of five runs, milliseconds
    local best_ms=999999 start end ms
    for _ in 1 2 3 4 5; do
        start=$(date +%s%N); "$@" >/dev/null; end=$(date +%s%N)
        ms=$(( (end - start) / 1000000 )); (( ms < best_ms )) && best_ms=$ms
    done
    echo "$best_ms"
}
find "$tree" -printf '%s %T@ %m %p\n' >/dev/null  # warm the cache
find_ms=$(best find "$tree" -printf '%s %T@ %m %p\n')
load_ms=$(best "$build/bench/bench_load" "$tree")
echo "find: ${find_ms} ms   load: ${load_ms} ms (process start included)"
