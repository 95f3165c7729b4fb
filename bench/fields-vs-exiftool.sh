#!/usr/bin/env bash
# Times reading the fields of one template over 1,000 generated MP3 files and 1,000
# generated JPEGs (cold: every file read; then the same command list again from the field
# cache) against `exiftool -fast -T` reading the same fields of the same files. The files
# are made once and kept; both sides run with the files in the OS cache, process start
# included on exiftool's side.
#   bench/fields-vs-exiftool.sh [BUILD_DIR] [FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/dev}
folder=${2:-/tmp/quillet-bench-fields}

if ! command -v exiftool >/dev/null; then
    sudo_cmd=()
    [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends libimage-exiftool-perl >/dev/null
fi

if [ ! -f "$folder/.done" ]; then
    rm -rf "$folder"
    mkdir -p "$folder/plain"
    QT_QPA_PLATFORM=offscreen "$build/tests/metadata/metadata_sample_images" "$folder/plain"
    /usr/bin/python3 - "$folder" <<'PY'
import os, shutil, subprocess, sys, wave
from mutagen import id3
folder = sys.argv[1]
wav = os.path.join(folder, "plain", "tone.wav")
with wave.open(wav, "wb") as w:
    w.setnchannels(2); w.setsampwidth(2); w.setframerate(44100); w.writeframes(b"\0\0\0\0" * 44100 * 3)
mp3 = os.path.join(folder, "plain", "plain.mp3")
subprocess.run(["lame", "--silent", "-b", "192", wav, mp3], check=True)
for i in range(1000):
    path = os.path.join(folder, "song%04d.mp3" % i)
    shutil.copy(mp3, path)
    tags = id3.ID3()
    tags.add(id3.TIT2(encoding=1, text="歌曲 %d" % i))
    tags.add(id3.TPE1(encoding=1, text="歌手 %d" % (i % 37)))
    tags.add(id3.TALB(encoding=1, text="专辑 %d" % (i % 50)))
    tags.add(id3.TRCK(encoding=1, text="%d/20" % (i % 20 + 1)))
    tags.add(id3.APIC(encoding=0, mime="image/jpeg", type=3, desc="", data=b"\xff\xd8" + os.urandom(30000)))
    tags.save(path, v2_version=3)
for i in range(1000):
    shutil.copy(os.path.join(folder, "plain", "plain.jpg"), os.path.join(folder, "photo%04d.jpg" % i))
PY
    exiv2 -M"set Exif.Image.Make Canon" -M"set Exif.Image.Model Canon EOS R5" \
          -M"set Exif.Photo.DateTimeOriginal 2021:05:06 07:08:09" -M"set Exif.Photo.FNumber 28/10" \
          -M"set Exif.Photo.ExposureTime 1/250" -M"set Xmp.xmp.Rating 4" mo "$folder"/photo*.jpg
    rm -rf "$folder/plain"
    touch "$folder/.done"
fi

cat "$folder"/* >/dev/null  # warm the cache for both sides
template='<M.ARTIST> - <M.TITLE><D.DATETAKEN> <D.MODEL>'
start=$(date +%s%N)
exiftool -fast -T -Artist -Title -DateTimeOriginal -Model "$folder" >/dev/null
end=$(date +%s%N)
exif_ms=$(( (end - start) / 1000000 ))
ours=$("$build/bench/bench_fields" "$folder" "$template")
echo "$ours"
cold_ms=$(sed -n 's/.*cold \([0-9.]*\) ms.*/\1/p' <<<"$ours" | head -1)
awk -v c="$cold_ms" -v e="$exif_ms" \
    'BEGIN { printf "exiftool -fast -T: %d ms; ours cold: %.1f ms; ratio %.3f (target <= 0.2)\n", e, c, c / e }'
