"""How readers find their page: contents, index, search."""

import html as escapes
import pathlib
import posixpath
import re

import page as pages_module

INDEX = "docs/all-members.html"
SEARCH = "docs/search.html"


def bar(name):
    """The line on top of each page."""
    folder = posixpath.dirname(name) or "."
    links = [("Contents", "docs/index.html"), ("All members", INDEX), ("Search", SEARCH)]
    anchors = [f'<a href="{posixpath.relpath(target, folder)}">{text}</a>' for text, target in links]
    return f'<p class="bar">VrxCommon {" | ".join(anchors)}</p>\n'


def entries(published, places):
    """Name, what it is, and where it is described, in the order of the names."""
    words = {"member": "of {}", "event": "event of {}", "class": "class", "enumeration": "enumeration", "record": "record"}
    rows = {
        (one.name, words[one.kind].format(one.owner), places[one.context]) for one in published if one.kind in words
    }
    return sorted(rows, key=lambda row: (row[0].lower(), row))


def index_page(published, places):
    rows = [
        f'<tr><td><a href="{posixpath.relpath(place, "docs")}">{name}</a></td><td>{what}</td></tr>'
        for name, what, place in entries(published, places)
    ]
    body = "<h1>All members</h1>\n<table>\n<tr><th>name</th><th>what it is</th></tr>\n" + "\n".join(rows) + "\n</table>"
    return pages_module.Page("", INDEX, "All members", body)


def sections(page):
    """Heading, place and text of each part of a page that begins with a heading."""
    parts = re.split(r'<h[1-4] id="([^"]*)">(.*?)</h[1-4]>', page.body)
    for anchor, heading, text in zip(parts[1::3], parts[2::3], parts[3::3]):
        plain = escapes.unescape(re.sub(r"<[^>]+>", " ", text))
        yield plain_text(heading), f"{page.name}#{anchor}", " ".join(plain.split())


def plain_text(heading):
    return escapes.unescape(re.sub(r"<[^>]+>", "", heading))


def quoted(text):
    """As a string of JavaScript that even the oldest browsers take, and that ends no script element."""
    text = text.replace("\\", "\\\\").replace('"', '\\"').replace("</", "<\\/")
    return '"' + "".join(c if c < "\x7f" else f"\\u{ord(c):04x}" for c in text) + '"'


def search_page(pages):
    """A page that searches the whole text; it works from a folder, without a server."""
    rows = [
        f"[{quoted(page.title)},{quoted(heading)},{quoted(posixpath.relpath(place, 'docs'))},{quoted(text)}]"
        for page in pages
        for heading, place, text in sections(page)
    ]
    script = (pathlib.Path(__file__).parent / "search.js").read_text()
    body = f"""<h1>Search</h1>
<form action="#" onsubmit="search(); return false"><p><label for="words">Words: </label>
<input id="words" size="40"> <input type="submit" value="Search"></p></form>
<div id="found"></div>
<script type="text/javascript">
var sections = [
{",".join(chr(10) + row for row in rows)[1:]}
];
{script}</script>"""
    return pages_module.html(pages_module.Page("", SEARCH, "Search", body), bar(SEARCH))


def contents(pages, index):
    """The table of contents: the chapters of the documentation's first page with the pages that they link."""
    by_name = {page.name: page for page in pages}
    first = by_name["docs/index.html"]
    rows, seen = [(0, "VrxCommon", "README.html"), (0, first.title, first.name)], {"README.html", first.name}
    for chapter in re.split(r"(?=<h2)", first.body)[1:]:
        rows.append((0, plain_text(re.search(r"<h2[^>]*>(.*?)</h2>", chapter).group(1)), first.name))
        for target in re.findall(r'<a href="([^"#]*)', chapter):
            name = posixpath.normpath(posixpath.join("docs", target))
            if name in by_name and name not in seen:
                seen.add(name)
                rows.append((1, by_name[name].title, name))
    rows += [(0, index.title, index.name)] + [(0, page.title, page.name) for page in pages if page.name not in seen]
    return rows


def keywords(published, places, pages):
    """Members, errors, and the headings of the other pages, each with what tells it from others of its name."""
    rows = [(f"{name} ({what})", place) for name, what, place in entries(published, places)]
    rows += [(f"Error {number - 10000}", place) for number, place in places.items() if number > 10000]
    for page in pages:
        if "/reference/" in page.name or page.source == "CHANGELOG.md":
            continue
        for heading, place, _ in sections(page):
            rows.append((heading if heading == page.title else f"{heading} ({page.title})", place))
    return [(0, name, place) for name, place in sorted(set(rows), key=lambda row: (row[0].lower(), row))]


def site_map(rows):
    """Rows of level, name and place as the help compiler takes them."""
    lines, level = ["<html><head></head><body>", "<ul>"], 0
    for depth, name, place in rows:
        lines += ["<ul>"] * (depth - level) + ["</ul>"] * (level - depth)
        level = depth
        lines.append(
            f'<li><object type="text/sitemap"><param name="Name" value="{escapes.escape(name)}">'
            f'<param name="Local" value="{place}"></object>'
        )
    return "\n".join(lines + ["</ul>"] * (level + 1) + ["</body></html>", ""])
