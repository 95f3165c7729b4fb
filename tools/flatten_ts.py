#!/usr/bin/env python3
"""Writes the finished messages of a Qt Linguist .ts file into one context, "QuilletPro".

The program looks its texts up by source text alone (see src/core/Translation.h), so the
compiled translation needs each source text once: the first finished translation of a
source text (with its disambiguation comment) is kept, unfinished ones are left out.

usage: flatten_ts.py IN.ts OUT.ts
"""
import copy
import sys
import xml.etree.ElementTree as ET


def finished(message):
    translation = message.find("translation")
    if translation is None or translation.get("type") in ("unfinished", "obsolete", "vanished"):
        return False
    return bool((translation.text or "").strip()) or len(translation) > 0


def main(source, target):
    root = ET.parse(source).getroot()
    flat = ET.Element("TS", root.attrib)
    context = ET.SubElement(flat, "context")
    ET.SubElement(context, "name").text = "QuilletPro"
    seen = set()
    for message in root.iter("message"):
        key = (message.findtext("source"), message.findtext("comment") or "")
        if key in seen or not finished(message):
            continue
        seen.add(key)
        kept = copy.deepcopy(message)
        for location in kept.findall("location"):
            kept.remove(location)
        context.append(kept)
    ET.ElementTree(flat).write(target, encoding="utf-8", xml_declaration=True)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
