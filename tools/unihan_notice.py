"""What the generators of compiled-in Unihan tables share: the Unicode version and copyright
lines of a Unihan file's header, and the permission notice of Debian's unicode-data."""

import re


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


def notice_comment(header, licence):
    """The copyright lines and the permission notice as C++ comment lines, for the head of a
    generated table."""
    lines = ["// " + line for line in copyright_lines(header)]
    lines.append("//")
    lines.extend(("// " + line).rstrip() for line in licence)
    return lines
