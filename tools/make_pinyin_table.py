#!/usr/bin/env python3
"""Writes the compiled-in pinyin dictionary from the Unihan readings of Debian's unicode-data.

Each character takes the readings of kXHC1983, kTGHZ2013 and kMandarin together; a character
that none of those three gives a reading takes those of kHanyuPinyin instead. A reading is
written as plain letters and a tone digit: the text is decomposed, the combining tone marks
become 1 (macron) to 4 (grave), no mark is 5, "u" with diaeresis is "v", and the circumflex
of "ê" is dropped. Every syllable that occurs is listed with all five tones, an entry for
each, the entries sorted by their syllable-and-tone text and the characters of an entry by
code point, so that the first entry holding a character gives its alphabetically first
reading.

    tools/make_pinyin_table.py [--readings Unihan_Readings.txt.bz2]
                               [--licence copyright] [--output src/expressions/PinyinTable.cpp]
"""

import argparse
import bz2
import collections
import re
import sys
import unicodedata

READINGS = "/usr/share/unicode/Unihan_Readings.txt.bz2"
LICENCE = "/usr/share/doc/unicode-data/copyright"
OUTPUT = "src/expressions/PinyinTable.cpp"

PREFERRED = ("kXHC1983", "kTGHZ2013", "kMandarin")
FALLBACK = "kHanyuPinyin"

TONES = {"\u0304": "1", "\u0301": "2", "\u030c": "3", "\u0300": "4"}
DIAERESIS = "\u0308"
CIRCUMFLEX = "\u0302"

# Characters of one entry per source line, so that no line (and no string literal piece)
# grows long.
PIECE = 40


def numbered(reading):
    """"chóng" -> "chong2", "lüè" -> "lve4", "ǹg" -> "ng4"."""
    letters = []
    tone = "5"
    for ch in unicodedata.normalize("NFD", reading.strip()):
        if ch in TONES:
            tone = TONES[ch]
        elif ch == DIAERESIS and letters and letters[-1] == "u":
            letters[-1] = "v"
        elif ch == CIRCUMFLEX and letters and letters[-1] == "e":
            pass
        elif "a" <= ch <= "z":
            letters.append(ch)
        else:
            raise ValueError("unexpected character %r in reading %r" % (ch, reading))
    if not letters:
        raise ValueError("empty reading %r" % reading)
    return "".join(letters), tone


def field_readings(field, value):
    """The readings of one Unihan field value, without the dictionary positions."""
    if field == "kMandarin":
        return value.split()
    readings = []
    for item in value.split():
        # "0001.010:ā", "1092.070*,1092.071:sóng", "10264.040:rén,ér"
        _, _, text = item.partition(":")
        readings.extend(r for r in text.split(",") if r)
    return readings


def read_unihan(path):
    header = []
    by_field = collections.defaultdict(lambda: collections.defaultdict(set))
    with bz2.open(path, "rt", encoding="utf-8") as source:
        for line in source:
            line = line.rstrip("\n")
            if line.startswith("#"):
                header.append(line)
                continue
            if not line:
                continue
            code, field, value = line.split("\t", 2)
            if field not in PREFERRED and field != FALLBACK:
                continue
            char = chr(int(code[2:], 16))
            for reading in field_readings(field, value):
                by_field[field][char].add(numbered(reading))
    return header, by_field


def build_entries(by_field):
    readings = collections.defaultdict(set)
    for field in PREFERRED:
        for char, found in by_field[field].items():
            readings[char] |= found
    for char, found in by_field[FALLBACK].items():
        if char not in readings:
            readings[char] = set(found)
    entries = collections.defaultdict(set)
    syllables = set()
    for char, found in readings.items():
        for syllable, tone in found:
            syllables.add(syllable)
            entries[syllable + tone].add(char)
    keys = sorted(s + t for s in syllables for t in "12345")
    return [(key, sorted(entries.get(key, ()))) for key in keys], len(readings)


def unicode_version(header):
    for line in header:
        match = re.match(r"#\s*Unicode version:\s*(\S+)", line)
        if match:
            return match.group(1)
    return "unknown"


def copyright_lines(header):
    return [line[1:].strip() for line in header if "©" in line or "trademarks" in line]


def permission_notice(path):
    with open(path, encoding="utf-8") as source:
        text = source.read()
    start = text.find("Permission is hereby granted")
    end = text.find("Unicode and the Unicode logo", start)
    if start < 0 or end < 0:
        raise ValueError("no permission notice in " + path)
    return [line.strip() for line in text[start:end].strip().splitlines()]


def cpp_literal(text):
    return 'u"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def render(header, entries, characters, licence):
    out = []
    out.append("// The pinyin dictionary: one entry per syllable and tone, \"a1 阿啊…\", sorted by the")
    out.append("// syllable-and-tone text; the characters of an entry in code-point order.")
    out.append("//")
    out.append("// Generated by tools/make_pinyin_table.py from Unihan_Readings.txt, Unicode %s, as"
               % unicode_version(header))
    out.append("// Debian's unicode-data package ships it. Do not edit; run the script again instead.")
    out.append("// %d entries, %d characters." % (len(entries), characters))
    out.append("//")
    out.append("// This table is modified data derived from the Unicode Character Database (the Unihan")
    out.append("// readings kXHC1983, kTGHZ2013, kMandarin and kHanyuPinyin, rewritten with tone digits")
    out.append("// and regrouped by reading). It is used under the following notice:")
    out.append("//")
    for line in copyright_lines(header):
        out.append("// " + line)
    out.append("//")
    for line in licence:
        out.append(("// " + line).rstrip())
    out.append("")
    out.append('#include "expressions/PinyinTable.h"')
    out.append("")
    out.append("namespace qp::chinese {")
    out.append("")
    out.append("const char16_t* const kPinyinEntries[] = {")
    for key, chars in entries:
        pieces = ["".join(chars[i:i + PIECE]) for i in range(0, len(chars), PIECE)] or [""]
        first = key + " " + pieces[0]
        if len(pieces) == 1:
            out.append("    %s," % cpp_literal(first))
            continue
        out.append("    %s" % cpp_literal(first))
        for piece in pieces[1:-1]:
            out.append("        %s" % cpp_literal(piece))
        out.append("        %s," % cpp_literal(pieces[-1]))
    out.append("};")
    out.append("")
    out.append("const int kPinyinEntryCount = int(sizeof kPinyinEntries / sizeof kPinyinEntries[0]);")
    out.append("")
    out.append("}  // namespace qp::chinese")
    return "\n".join(out) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--readings", default=READINGS)
    parser.add_argument("--licence", default=LICENCE)
    parser.add_argument("--output", default=OUTPUT)
    args = parser.parse_args()
    header, by_field = read_unihan(args.readings)
    entries, characters = build_entries(by_field)
    text = render(header, entries, characters, permission_notice(args.licence))
    with open(args.output, "w", encoding="utf-8", newline="\n") as target:
        target.write(text)
    print("%s: %d entries, %d characters" % (args.output, len(entries), characters), file=sys.stderr)


if __name__ == "__main__":
    main()
