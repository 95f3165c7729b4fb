#!/usr/bin/env bash
# Times the content hash tags "<CRC32>", "<MD5>" and "<SHA1>" on a 1 GiB file against
# zlib.crc32 in python3, md5sum and sha1sum over the same file, best of three warm runs
# each (process start included on both sides), and checks that the values agree.
# The file is made once and kept.
#   bench/hash-vs-tools.sh [BUILD_DIR] [FILE]
set -euo pipefail
build=${1:-build/dev}
file=${2:-/tmp/quillet-bench-1gib.dat}
if [ ! -f "$file" ] || [ "$(stat -c %s "$file")" != 1073741824 ]; then
    head -c 1073741824 /dev/urandom >"$file.part"
    mv "$file.part" "$file"
fi
best() {  # best of three runs, milliseconds
    local best_ms=999999 start end ms
    for _ in 1 2 3; do
        start=$(date +%s%N); "$@" >/dev/null; end=$(date +%s%N)
        ms=$(( (end - start) / 1000000 )); (( ms < best_ms )) && best_ms=$ms
    done
    echo "$best_ms"
}
crc_py='import sys, zlib
c = 0
with open(sys.argv[1], "rb") as f:
    while True:
        b = f.read(262144)
        if not b:
            break
        c = zlib.crc32(b, c)
print("%08X" % c)'
cat "$file" >/dev/null  # warm the cache
check() {  # tag, tool's value
    local ours
    ours=$("$build/bench/bench_hash" "$1" "$file" | cut -d' ' -f1)
    [ "${ours^^}" = "${2^^}" ] || { echo "$1 disagrees: $ours vs $2" >&2; exit 1; }
}
check '<CRC32>' "$(python3 -c "$crc_py" "$file")"
check '<MD5>' "$(md5sum "$file" | cut -d' ' -f1)"
check '<SHA1>' "$(sha1sum "$file" | cut -d' ' -f1)"
report() {  # tag, our ms, tool, tool ms
    awk -v t="$1" -v o="$2" -v n="$3" -v m="$4" \
        'BEGIN { printf "%-8s %6d ms   %-14s %6d ms   ratio %.2f\n", t, o, n, m, o / m }'
}
report '<CRC32>' "$(best "$build/bench/bench_hash" '<CRC32>' "$file")" "python3 zlib" "$(best python3 -c "$crc_py" "$file")"
report '<MD5>' "$(best "$build/bench/bench_hash" '<MD5>' "$file")" "md5sum" "$(best md5sum "$file")"
report '<SHA1>' "$(best "$build/bench/bench_hash" '<SHA1>' "$file")" "sha1sum" "$(best sha1sum "$file")"
