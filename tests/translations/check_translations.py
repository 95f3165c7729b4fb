#!/usr/bin/env python3
"""Fails while the English translation is not finished.

Runs lupdate over the sources into a copy of translations/quilletpro_en.ts (so texts that
are in the sources but not yet in the file count too) and lists every message whose
translation is missing or marked unfinished, and every translation that lost or gained a
%1-style place marker.

usage: check_translations.py LUPDATE SOURCE_DIR
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

MARKER = re.compile(r"%L?\d+")


def problems(ts_file):
    found = []
    for context in ET.parse(ts_file).getroot().iter("context"):
        name = context.findtext("name")
        for message in context.iter("message"):
            source = message.findtext("source") or ""
            translation = message.find("translation")
            text = "" if translation is None else (translation.text or "")
            first = source.splitlines()[0] if source else ""
            if translation is None or translation.get("type") == "unfinished" or not text.strip():
                found.append(f"unfinished  {name}: {first}")
            elif sorted(MARKER.findall(source)) != sorted(MARKER.findall(text)):
                found.append(f"markers     {name}: {first}  ->  {text.splitlines()[0]}")
    return found


def main(lupdate, source_dir):
    ts = os.path.join(source_dir, "translations", "quilletpro_en.ts")
    with tempfile.TemporaryDirectory() as work:
        copy = os.path.join(work, "quilletpro_en.ts")
        shutil.copyfile(ts, copy)
        subprocess.run([lupdate, "-silent", "-locations", "none", "-no-obsolete", "-no-ui-lines",
                        "-source-language", "zh_CN", "-target-language", "en",
                        os.path.join(source_dir, "src"), "-ts", copy],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        found = problems(copy)
    for line in found:
        print(line)
    if found:
        print(f"{len(found)} texts need translating: run scripts/update-translations, then translate "
              "translations/quilletpro_en.ts", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1], sys.argv[2]))
