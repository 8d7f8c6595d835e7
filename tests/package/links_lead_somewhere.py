#!/usr/bin/python3
"""links_lead_somewhere.py FOLDER - every link and picture of the folder's pages leads to a file or folder in it and, where
it names an anchor, to one that the page has. Prints the others and fails if there is one."""

import pathlib
import re
import sys
import urllib.parse


def failures(folder):
    for page in sorted(folder.rglob("*.html")):
        text = page.read_text(encoding="ascii")
        for link in re.findall(r'(?:href|src)="([^"]*)"', re.sub(r"(?s)<script.*?</script>", "", text)):
            if "://" in link:
                continue
            target, _, anchor = urllib.parse.unquote(link).partition("#")
            file = page.parent / target if target else page
            if not file.exists():
                yield f"{page}: there is no {link}"
            elif anchor and f'id="{anchor}"' not in file.read_text(encoding="ascii"):
                yield f"{page}: {link} has no such anchor"


folder = pathlib.Path(sys.argv[1])
found = list(failures(folder))
if len(list(folder.rglob("*.html"))) < 20:
    found.append("there are too few pages")
print("\n".join(found))
sys.exit(1 if found else 0)
