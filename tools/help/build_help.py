#!/usr/bin/python3 -B
"""build_help.py pages FOLDER - writes the documentation as HTML pages into a package's folder, in place of Markdown.
build_help.py chm FOLDER - writes the pages, the contents, the index and the help contexts that compile_chm takes.

The pages come from README.md, CHANGELOG.md, docs and samples/README.md, the contexts from the IDL files."""

import pathlib
import shutil
import sys

import contexts
import navigation
import page

REPO = pathlib.Path(__file__).resolve().parents[2]
INPUTS = ["README.md", "CHANGELOG.md", "samples/README.md"]
# For those who have the sources.
LEFT_OUT = {"docs/extending.md"}


def inputs():
    docs = sorted(path.relative_to(REPO).as_posix() for path in (REPO / "docs").rglob("*.md"))
    return INPUTS + [path for path in docs if path not in LEFT_OUT]


def write(folder, name, text):
    path = folder / name
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(text.encode("ascii", "xmlcharrefreplace"))


def copy_pictures(folder):
    names = ["docs/help.css"] + [path.relative_to(REPO).as_posix() for path in (REPO / "docs").rglob("*.png")]
    for name in names:
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(REPO / "tools/help/help.css" if name.endswith(".css") else REPO / name, folder / name)
    return names


def main(kind, folder):
    folder = pathlib.Path(folder)
    compiled = kind == "chm"
    pages = [page.read(REPO, name) for name in inputs()]
    known = {one.name for one in pages} | {navigation.INDEX, navigation.SEARCH}
    for one in pages:
        one.body = page.with_links(one, known, keep_others=not compiled)
    published = contexts.read(REPO)
    places = contexts.places(published, pages)
    index = navigation.index_page(published, places)
    for one in pages + [index]:
        write(folder, one.name, page.html(one, bar="" if compiled else navigation.bar(one.name)))
    pictures = copy_pictures(folder)
    if not compiled:
        write(folder, navigation.SEARCH, navigation.search_page(pages))
        return
    contents = navigation.contents(pages, index)
    write(folder, "contents.hhc", navigation.site_map(contents))
    write(folder, "keywords.hhk", navigation.site_map(navigation.keywords(published, places, pages)))
    names = ["docs/index.html"] + sorted(known - {"docs/index.html", navigation.SEARCH})
    (folder / "files.txt").write_text("".join(name + "\n" for name in names + pictures))
    (folder / "contexts.txt").write_text("".join(f"{number} {place}\n" for number, place in sorted(places.items())))


if __name__ == "__main__":
    if len(sys.argv) != 3 or sys.argv[1] not in ("pages", "chm"):
        sys.exit(__doc__)
    main(*sys.argv[1:])
