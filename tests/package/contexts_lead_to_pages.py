#!/usr/bin/python3
"""contexts_lead_to_pages.py VrxCommon.chm LISTING docs/errors.md - follows every help context into the help file.

LISTING holds what help_contexts prints of the installed libraries. Each of its names must have a context and the help
file's name, and each context, and that of each error on the page, must lead to a page in the help file and, where it names
one, to an anchor of the page. Prints the others and fails if there is one."""

import pathlib
import re
import struct
import subprocess
import sys
import tempfile

failures = []


def extracted(chm, name, folder):
    """A file out of the help file; nothing when it has none of that name."""
    target = pathlib.Path(folder) / "extracted"
    target.unlink(missing_ok=True)
    subprocess.run(["chmls", "extract", chm, "/" + name, target], capture_output=True)
    return target.read_bytes() if target.exists() else b""


def places(chm, folder):
    """The help file's own table: numbers, and offsets of texts in another table."""
    table, texts = extracted(chm, "#IVB", folder), extracted(chm, "#STRINGS", folder)
    found = {}
    for number, offset in struct.iter_unpack("<II", table[4:]):
        found[number] = texts[offset : texts.index(b"\0", offset)].decode()
    return found


def follow(name, context, found, page_of):
    if context not in found:
        failures.append(f"{name}: context {context} is not in the help file")
        return
    page, _, anchor = found[context].partition("#")
    if not page_of(page):
        failures.append(f"{name}: there is no page {page}")
    elif anchor and f'id="{anchor}"' not in page_of(page):
        failures.append(f"{name}: {page} has no {anchor}")


def main(chm, listing, error_page):
    pages = {}
    with tempfile.TemporaryDirectory() as folder:

        def page_of(name):
            if name not in pages:
                pages[name] = extracted(chm, name, folder).decode("ascii")
            return pages[name]

        found = places(chm, folder)
        rows = [line.split("\t") for line in pathlib.Path(listing).read_text().splitlines()]
        for context, file, name in rows:
            if re.split(r"[\\/]", file)[-1] != "VrxCommon.chm":
                failures.append(f"{name}: its help file is '{file}'")
            follow(name, int(context), found, page_of)
        numbers = re.findall(r"^\| (\d{1,5}) ", pathlib.Path(error_page).read_text(), re.M)
        for number in set(numbers):
            follow(f"error {number}", 10000 + int(number), found, page_of)
            if not found.get(10000 + int(number), "").endswith(f"#error-{number}"):
                failures.append(f"error {number} does not lead to its row")
    if len(rows) < 100 or len(numbers) < 20:
        failures.append(f"only {len(rows)} names and {len(numbers)} errors were looked at")
    print("\n".join(failures))
    sys.exit(1 if failures else 0)


main(*sys.argv[1:])
