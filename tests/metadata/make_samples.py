#!/usr/bin/env python3
"""Makes the sample files of the metadata tests: real audio from lame, flac, oggenc, opusenc
and wavpack, tagged with mutagen; photos from the plain images that the test helper writes
with QImage, given EXIF, IPTC and XMP by the exiv2 tool; and broken files made from them.

    make_samples.py --images PLAIN_IMAGES_DIR OUTPUT_DIR

"""

import argparse
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import wave

from mutagen import id3
from mutagen.aiff import AIFF
from mutagen.flac import FLAC
from mutagen.mp4 import MP4, MP4Cover
from mutagen.oggopus import OggOpus
from mutagen.oggvorbis import OggVorbis
from mutagen.wavpack import WavPack

RATE = 44100


def run(*args):
    subprocess.run([a if isinstance(a, (str, bytes)) else str(a) for a in args], check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def silence_wav(path, seconds=2, info=None):
    """A stereo 16-bit WAV of silence; `info` adds a RIFF INFO list of raw byte values."""
    with wave.open(path, "wb") as w:
        w.setnchannels(2)
        w.setsampwidth(2)
        w.setframerate(RATE)
        w.writeframes(b"\0\0\0\0" * RATE * seconds)
    if info:
        body = b"INFO"
        for key, value in info.items():
            value += b"\0"
            body += key + struct.pack("<I", len(value)) + value + (b"\0" if len(value) % 2 else b"")
        with open(path, "r+b") as f:
            f.seek(0, 2)
            f.write(b"LIST" + struct.pack("<I", len(body)) + body)
            size = f.tell() - 8
            f.seek(4)
            f.write(struct.pack("<I", size))


def id3v1(title, artist, album, year, comment, track, genre):
    block = b"TAG" + title.ljust(30, b"\0") + artist.ljust(30, b"\0") + album.ljust(30, b"\0")
    return block + year.ljust(4, b"\0") + comment.ljust(28, b"\0") + b"\0" + bytes([track, genre])


def latin1_bytes(raw):
    """Bytes that mutagen writes unchanged into a frame marked as Latin-1."""
    return raw.decode("latin-1")


def make_audio(out, work):
    wav = os.path.join(work, "silence.wav")
    silence_wav(wav)
    mp3 = os.path.join(work, "plain.mp3")
    run("lame", "--silent", "-b", "128", wav, mp3)

    # ID3v1 only, with GBK text as Chinese taggers wrote it.
    path = os.path.join(out, "id3v1.mp3")
    shutil.copy(mp3, path)
    with open(path, "ab") as f:
        f.write(id3v1("七里香".encode("gbk"), "周杰伦".encode("gbk"), b"Album One", b"2004", b"note", 7, 13))

    # ID3v2.3 in UTF-16, with a cover, and an ID3v1 tag that fills in the genre.
    path = os.path.join(out, "id3v23.mp3")
    shutil.copy(mp3, path)
    tags = id3.ID3()
    tags.add(id3.TIT2(encoding=1, text="晴天"))
    tags.add(id3.TPE1(encoding=1, text="Jay Chou"))
    tags.add(id3.TALB(encoding=1, text="叶惠美"))
    tags.add(id3.TRCK(encoding=1, text="3/11"))
    tags.add(id3.TPOS(encoding=1, text="1/2"))
    tags.add(id3.TYER(encoding=1, text="2003"))
    tags.add(id3.APIC(encoding=0, mime="image/png", type=3, desc="", data=b"\x89PNG\r\n\x1a\n" + b"\0" * 32))
    tags.save(path, v2_version=3)
    with open(path, "ab") as f:
        f.write(id3v1(b"", b"", b"", b"", b"", 0, 17))

    # ID3v2.4 in UTF-8 with the long tail of properties and lyrics.
    path = os.path.join(out, "id3v24.mp3")
    shutil.copy(mp3, path)
    tags = id3.ID3()
    for frame in (id3.TIT2(encoding=3, text="Intro"), id3.TPE1(encoding=3, text="Artist A"),
                  id3.TPE2(encoding=3, text="Various"), id3.TALB(encoding=3, text="Album Two"),
                  id3.TRCK(encoding=3, text="12"), id3.TDRC(encoding=3, text="2010-05-06"),
                  id3.TCON(encoding=3, text="Rock"), id3.TCOM(encoding=3, text="Composer C"),
                  id3.TPUB(encoding=3, text="Label L"), id3.TBPM(encoding=3, text="120"),
                  id3.TSRC(encoding=3, text="USRC17607839"), id3.TCMP(encoding=3, text="1"),
                  id3.TDOR(encoding=3, text="1999"),
                  id3.USLT(encoding=3, lang="eng", desc="", text="la la la")):
        tags.add(frame)
    tags.save(path, v2_version=4)

    # ID3v2.3 frames marked as Latin-1 that hold GBK and Big5 bytes.
    for name, codec, title in (("gbk-latin1.mp3", "gbk", "青花瓷"), ("big5-latin1.mp3", "big5", "簡單愛")):
        path = os.path.join(out, name)
        shutil.copy(mp3, path)
        tags = id3.ID3()
        tags.add(id3.TIT2(encoding=0, text=latin1_bytes(title.encode(codec))))
        tags.add(id3.TPE1(encoding=0, text="Jay"))
        tags.save(path, v2_version=3)

    # FLAC and Ogg carry Xiph comments.
    path = os.path.join(out, "comments.flac")
    run("flac", "--silent", "-f", "-o", path, wav)
    flac = FLAC(path)
    flac.update({"TITLE": "稻香", "ARTIST": "周杰伦", "TRACKNUMBER": "5", "TRACKTOTAL": "10", "DATE": "2008",
                 "MUSICBRAINZ_ALBUMID": "abc-123"})
    flac.save()

    path = os.path.join(out, "comments.ogg")
    run("oggenc", "-Q", "-o", path, wav)
    ogg = OggVorbis(path)
    ogg.update({"TITLE": "Ogg Title", "ARTIST": "Ogg Artist", "TRACKNUMBER": "2/9"})
    ogg.save()

    path = os.path.join(out, "comments.opus")
    run("opusenc", "--quiet", wav, path)
    opus = OggOpus(path)
    opus.update({"TITLE": "Opus Title"})
    opus.save()

    # An M4A: a minimal AAC track, then iTunes atoms.
    path = os.path.join(out, "atoms.m4a")
    write_m4a(path)
    mp4 = MP4(path)
    mp4["\xa9nam"] = ["M4A 标题"]
    mp4["\xa9ART"] = ["M4A Artist"]
    mp4["trkn"] = [(4, 8)]
    mp4["covr"] = [MP4Cover(b"\xff\xd8\xff\xe0" + b"\0" * 16, imageformat=MP4Cover.FORMAT_JPEG)]
    mp4.save()

    # WAV with a RIFF INFO list in GBK; AIFF and WavPack with their usual tags.
    path = os.path.join(out, "info.wav")
    silence_wav(path, 1, {b"INAM": "夜曲".encode("gbk"), b"IART": b"Jay"})

    path = os.path.join(out, "id3.aiff")
    write_aiff(path)
    aiff = AIFF(path)
    aiff.add_tags()
    aiff.tags.add(id3.TIT2(encoding=3, text="AIFF Title"))
    aiff.save()

    path = os.path.join(out, "ape.wv")
    run("wavpack", "-q", "-y", wav, "-o", path)
    wv = WavPack(path)
    wv["Title"] = "WavPack Title"
    wv["Track"] = "6"
    wv.save()

    # Broken and misnamed files.
    with open(os.path.join(out, "id3v24.mp3"), "rb") as f:
        whole = f.read()
    with open(os.path.join(out, "truncated.mp3"), "wb") as f:
        f.write(whole[:60])  # the ID3 header promises far more than is there
    shutil.copy(os.path.join(out, "id3v23.mp3"), os.path.join(out, "music-named.jpg"))
    with open(os.path.join(out, "text-named.mp3"), "w") as f:
        f.write("just some text, not music\n")
    open(os.path.join(out, "empty.mp3"), "wb").close()


def box(kind, payload):
    return struct.pack(">I", 8 + len(payload)) + kind + payload


def full(kind, payload, version=0, flags=0):
    return box(kind, struct.pack(">I", (version << 24) | flags) + payload)


def write_m4a(path):
    matrix = struct.pack(">9I", 0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000)
    seconds = 2
    mvhd = full(b"mvhd", struct.pack(">IIII", 0, 0, 1000, seconds * 1000) + struct.pack(">IH", 0x10000, 0x100)
                + b"\0" * 10 + matrix + b"\0" * 24 + struct.pack(">I", 2))
    tkhd = full(b"tkhd", struct.pack(">IIIII", 0, 0, 1, 0, seconds * 1000) + b"\0" * 8
                + struct.pack(">HHHH", 0, 0, 0x100, 0) + matrix + struct.pack(">II", 0, 0), flags=7)
    mdhd = full(b"mdhd", struct.pack(">IIIIHH", 0, 0, RATE, RATE * seconds, 0x55C4, 0))
    hdlr = full(b"hdlr", struct.pack(">I", 0) + b"soun" + b"\0" * 12 + b"SoundHandler\0")
    smhd = full(b"smhd", struct.pack(">HH", 0, 0))
    dinf = box(b"dinf", full(b"dref", struct.pack(">I", 1) + full(b"url ", b"", flags=1)))
    config = bytes([0x05, 2, 0x12, 0x10])
    decoder = bytes([0x04, 13 + len(config), 0x40, 0x15, 0, 0, 0]) + struct.pack(">II", 128000, 128000) + config
    es = bytes([0x03, 3 + len(decoder) + 3]) + struct.pack(">HB", 1, 0) + decoder + bytes([0x06, 1, 0x02])
    esds = full(b"esds", es)
    mp4a = box(b"mp4a", b"\0" * 6 + struct.pack(">H", 1) + b"\0" * 8 + struct.pack(">HHHHI", 2, 16, 0, 0, RATE << 16) + esds)
    stbl = box(b"stbl", full(b"stsd", struct.pack(">I", 1) + mp4a) + full(b"stts", struct.pack(">I", 0))
               + full(b"stsc", struct.pack(">I", 0)) + full(b"stsz", struct.pack(">II", 0, 0))
               + full(b"stco", struct.pack(">I", 0)))
    trak = box(b"trak", tkhd + box(b"mdia", mdhd + hdlr + box(b"minf", smhd + dinf + stbl)))
    with open(path, "wb") as f:
        f.write(box(b"ftyp", b"M4A " + struct.pack(">I", 0) + b"M4A mp42isom"))
        f.write(box(b"moov", mvhd + trak))
        f.write(box(b"mdat", b""))


def write_aiff(path):
    frames = RATE
    comm = struct.pack(">hIh", 2, frames, 16) + b"\x40\x0e\xac\x44" + b"\0" * 6  # 44100 as an 80-bit float
    ssnd = struct.pack(">II", 0, 0) + b"\0" * (frames * 4)
    body = b"AIFF" + box_be(b"COMM", comm) + box_be(b"SSND", ssnd)
    with open(path, "wb") as f:
        f.write(b"FORM" + struct.pack(">I", len(body)) + body)


def box_be(kind, payload):
    return kind + struct.pack(">I", len(payload)) + payload + (b"\0" if len(payload) % 2 else b"")


def write_tiff(path, width=8, height=6):
    """An uncompressed grey TIFF, little-endian, with the tags a reader needs."""
    pixels = bytes(range(width * height))
    entries = [(256, 3, 1, width), (257, 3, 1, height), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1),
               (273, 4, 1, 8), (277, 3, 1, 1), (278, 3, 1, height), (279, 4, 1, len(pixels))]
    ifd_at = 8 + len(pixels)
    ifd = struct.pack("<H", len(entries))
    for tag, kind, count, value in entries:
        ifd += struct.pack("<HHI", tag, kind, count) + (struct.pack("<HH", value, 0) if kind == 3 else struct.pack("<I", value))
    with open(path, "wb") as f:
        f.write(b"II*\0" + struct.pack("<I", ifd_at) + pixels + ifd + struct.pack("<I", 0))


def exiv2(path, *commands):
    args = ["exiv2"]
    for command in commands:
        args += [b"-M" + (command if isinstance(command, bytes) else command.encode("utf-8"))]
    run(*args, "mo", path)


def ucs2_bytes(text):
    return " ".join(str(b) for b in (text + "\0").encode("utf-16-le"))


def make_photos(out, images):
    plain = os.path.join(images, "plain.jpg")

    path = os.path.join(out, "exif.jpg")
    shutil.copy(plain, path)
    exiv2(path,
          "set Exif.Image.Make Canon", "set Exif.Image.Model Canon EOS R5",
          "set Exif.Photo.DateTimeOriginal 2021:05:06 07:08:09", "set Exif.Photo.SubSecTimeOriginal 12",
          "set Exif.Photo.OffsetTimeOriginal +08:00", "set Exif.Photo.DateTimeDigitized 2021:05:06 07:08:10",
          "set Exif.Photo.FNumber 28/10", "set Exif.Photo.ExposureTime 1/250",
          "set Exif.Photo.ISOSpeedRatings 400", "set Exif.Photo.FocalLength 50/1",
          "set Exif.Photo.FocalLengthIn35mmFilm 75", "set Exif.Photo.Flash 1",
          "set Exif.Photo.LensModel RF24-105mm F4 L IS USM", "set Exif.Image.Orientation 6",
          "set Exif.Image.XPTitle Byte " + ucs2_bytes("西湖日落"),
          "set Exif.Image.XPKeywords Byte " + ucs2_bytes("旅行;杭州"),
          b"set Exif.Image.Artist " + "张三".encode("gbk"),
          "set Exif.GPSInfo.GPSLatitudeRef N", "set Exif.GPSInfo.GPSLatitude 30/1 14/1 3050/100",
          "set Exif.GPSInfo.GPSLongitudeRef E", "set Exif.GPSInfo.GPSLongitude 120/1 9/1 0/1",
          "set Exif.GPSInfo.GPSAltitudeRef 0", "set Exif.GPSInfo.GPSAltitude 125/10",
          b"set Iptc.Application2.City " + "杭州".encode("gbk"),
          "set Iptc.Application2.Byline Photographer P", "add Iptc.Application2.Keywords lake",
          "add Iptc.Application2.Keywords sunset",
          "set Xmp.xmp.CreateDate 2021-05-06T07:08:09+08:00", "set Xmp.xmp.Rating 4")

    path = os.path.join(out, "xmp-only.jpg")
    shutil.copy(plain, path)
    exiv2(path, "set Xmp.xmp.CreateDate 2019-03-04T05:06:07+09:00")

    path = os.path.join(out, "iptc-utf8.jpg")
    shutil.copy(plain, path)
    exiv2(path, "set Iptc.Envelope.CharacterSet \x1b%G", "set Iptc.Application2.City 北京")

    shutil.copy(plain, os.path.join(out, "none.jpg"))

    path = os.path.join(out, "exif.png")
    shutil.copy(os.path.join(images, "plain.png"), path)
    exiv2(path, "set Exif.Image.Model PNG Camera", "set Exif.Photo.DateTimeOriginal 2020:01:02 03:04:05")

    path = os.path.join(out, "exif.tif")
    write_tiff(path)
    exiv2(path, "set Exif.Image.Model TIFF Camera")

    # EXIF whose first directory claims 65535 entries, far past the end of its block.
    with open(os.path.join(out, "exif.jpg"), "rb") as f:
        data = bytearray(f.read())
    at = data.find(b"Exif\0\0") + 6
    little = data[at:at + 2] == b"II"
    ifd = at + struct.unpack("<I" if little else ">I", data[at + 4:at + 8])[0]
    data[ifd:ifd + 2] = b"\xff\xff"
    with open(os.path.join(out, "lying-exif.jpg"), "wb") as f:
        f.write(data)
    shutil.copy(os.path.join(out, "exif.jpg"), os.path.join(out, "photo-named.mp3"))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--images", required=True)
    parser.add_argument("output")
    args = parser.parse_args()
    os.makedirs(args.output, exist_ok=True)
    with tempfile.TemporaryDirectory() as work:
        make_audio(args.output, work)
    make_photos(args.output, args.images)


if __name__ == "__main__":
    sys.exit(main())
