#!/usr/bin/python3
"""registered_rows.py BEFORE.reg AFTER.reg ROWS... - compares what has come into HKLM\\Software\\Classes between two exports
with the rows that registration_rows printed, both ways. Prints the differences and fails if there is one.

Keys are the same in any case. An installer's folder ends in a backslash, that of self-registration does not."""

import pathlib
import re
import sys

ROOT = "HKEY_LOCAL_MACHINE\\Software\\Classes"

# Of Software\Classes, 32-bit and 64-bit programs have these for themselves; Windows shows them the same of everything
# else. Wine does not: there what a 64-bit installer writes for both is in the part of the 32-bit programs.
OWN = ("wow6432node\\clsid", "wow6432node\\interface")


def seen_by_both(key):
    return key if key.startswith(OWN) else key.removeprefix("wow6432node\\")


def unquoted(text):
    return re.sub(r"\\(.)", r"\1", text)


def exported(path):
    """Key, name and text of each value, and each key that has none."""
    text = pathlib.Path(path).read_text(encoding="utf-16")
    found, key, values = set(), "", 0
    for line in text.splitlines() + ["[]"]:
        if line.startswith("["):
            if key and values == 0:
                found.add((key,))
            key, values = seen_by_both(line[1:-1][len(ROOT) + 1 :].lower()), 0
        match = re.match(r'(?:@|"((?:[^"\\]|\\.)*)")="((?:[^"\\]|\\.)*)"$', line)
        if match:
            values += 1
            found.add((key, unquoted(match.group(1) or ""), unquoted(match.group(2)).rstrip("\\")))
    return {row for row in found if row[0] != "installer" and not row[0].startswith("installer\\")}


def listed(path):
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        key, *value = line.split("\t")
        yield (key.lower(), value[0], value[1].rstrip("\\")) if value else (key.lower(),)


def is_own(row, rows):
    return len(row) > 1 or row in rows


def main(before, after, *files):
    rows = {row for file in files for row in listed(file)}
    came, went = exported(after) - exported(before), exported(before) - exported(after)
    # A key that stands only above others has no values, and is no row.
    came = {row for row in came if is_own(row, rows)}
    went = {row for row in went if len(row) > 1}
    differences = [f"too much: {row}" for row in sorted(came - rows)]
    differences += [f"missing: {row}" for row in sorted(rows - came)]
    differences += [f"gone: {row}" for row in sorted(went)]
    print("\n".join(differences))
    sys.exit(1 if differences else 0)


main(*sys.argv[1:])
