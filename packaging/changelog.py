#!/usr/bin/env python3
"""CHANGELOG.md for the packages.

Usage: changelog.py debian|releases|check VERSION
debian: Debian changelog; releases: <releases> of the AppStream data; check: VERSION must be the newest entry.
"""
import datetime
import html
import pathlib
import re
import sys
import textwrap

MAINTAINER = "Ferrowen developers <developers@ferrowen.example>"
HEADING = re.compile(r"^## (\S+) - (\d{4}-\d\d-\d\d)$")


def entries(text):
    """[(version, date, [point, ...]), ...] in file order."""
    found = []
    for line in text.splitlines():
        if heading := HEADING.match(line):
            found.append((heading[1], datetime.date.fromisoformat(heading[2]), []))
        elif line.startswith("## "):
            sys.exit(f"CHANGELOG.md: no version and date in: {line}")
        elif found and line.startswith("- "):
            found[-1][2].append(line[2:])
        elif found and line.startswith("  ") and found[-1][2]:
            found[-1][2][-1] += " " + line.strip()
    return found


def debian(found):
    for version, date, points in found:
        print(f"ferrowen ({version}) unstable; urgency=medium\n")
        for point in points:
            print(textwrap.fill(point.replace("`", ""), 78, initial_indent="  * ", subsequent_indent="    "))
        print(f"\n -- {MAINTAINER}  {date:%a, %d %b %Y} 12:00:00 +0000\n")


def releases(found):
    print("  <releases>")
    for version, date, points in found:
        print(f'    <release version="{version}" date="{date}">\n      <description>\n        <ul>')
        for point in points:
            print(f"          <li>{html.escape(point.replace('`', ''), quote=False)}</li>")
        print("        </ul>\n      </description>\n    </release>")
    print("  </releases>")


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__.strip())
    job, version = sys.argv[1:]
    path = pathlib.Path(__file__).resolve().parent.parent / "CHANGELOG.md"
    found = entries(path.read_text(encoding="utf-8"))
    if not found or found[0][0] != version:
        sys.exit(f"CHANGELOG.md: the newest entry is {found[0][0] if found else 'missing'}, the version is {version}")
    {"debian": debian, "releases": releases, "check": lambda _: None}[job](found)


main()
