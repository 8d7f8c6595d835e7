"""One page: Markdown in, HTML out."""

import dataclasses
import html as escapes
import posixpath
import re

import markdown


@dataclasses.dataclass
class Page:
    source: str  # the Markdown file, relative to the project
    name: str  # the HTML file, relative to the package
    title: str
    body: str


def output_name(source):
    """README.md of a folder is its index.html; that of the whole keeps its name, which people look for."""
    if posixpath.basename(source) == "README.md" and "/" in source:
        return posixpath.join(posixpath.dirname(source), "index.html")
    return source[: -len(".md")] + ".html"


def anchor(text, _separator="-"):
    """The name of a heading in links, as the project's Markdown pages use it."""
    return re.sub(r"[^a-z0-9 _-]", "", text.lower()).replace(" ", "-")


def without_source_tree(text):
    """Takes out what is said of the source tree, and the remarks that name samples."""
    text = re.sub(r"<!-- source tree -->\n.*?<!-- end -->\n", "", text, flags=re.S)
    return re.sub(r"^<!--.*?-->\n", "", text, flags=re.M)


def with_whole_headings(text):
    """Keeps the sign # at the end of a heading, which the converter takes for a part of its frame."""
    return re.sub(r"^(#+ .*[^\s\\#])#$", r"\1\\#", text, flags=re.M)


def with_error_rows(body):
    """Names the first row of each error's number."""
    seen = set()

    def named(match):
        number = match.group(1)
        first = number not in seen
        seen.add(number)
        return f'<tr id="error-{number}">\n<td>{number}' if first else match.group(0)

    return re.sub(r"<tr>\n<td>(\d{1,5})(?=</td>| )", named, body)


def read(repo, source):
    text = with_whole_headings(without_source_tree((repo / source).read_text(encoding="utf-8")))
    converter = markdown.Markdown(
        extensions=["tables", "fenced_code", "toc"], extension_configs={"toc": {"slugify": anchor}}
    )
    body = converter.convert(text)
    if source == "docs/errors.md":
        body = with_error_rows(body)
    title = escapes.unescape(re.search(r"<h1[^>]*>(.*?)</h1>", body, re.S).group(1))
    return Page(source, output_name(source), re.sub(r"<[^>]+>", "", title), body)


def with_links(page, known, keep_others):
    """Leads links between Markdown files to the pages. Other files are linked where the reader has them."""

    def led(match):
        target, _, fragment = match.group(1).partition("#")
        if "://" in target or not target:
            return match.group(0)
        path = posixpath.normpath(posixpath.join(posixpath.dirname(page.source), target))
        name = output_name(path) if path.endswith(".md") else path
        if name in known:
            relative = posixpath.relpath(name, posixpath.dirname(page.name) or ".")
            return f'<a href="{relative}{"#" + fragment if fragment else ""}">{match.group(2)}</a>'
        return match.group(0) if keep_others else match.group(2)

    return re.sub(r'<a href="([^"]*)">(.*?)</a>', led, page.body, flags=re.S)


def html(page, bar):
    style = posixpath.relpath("docs/help.css", posixpath.dirname(page.name) or ".")
    return f"""<!DOCTYPE html PUBLIC "-//W3C//DTD HTML 4.01//EN" "http://www.w3.org/TR/html4/strict.dtd">
<html lang="en">
<head>
<meta http-equiv="Content-Type" content="text/html; charset=us-ascii">
<title>{escapes.escape(page.title)}</title>
<link rel="stylesheet" type="text/css" href="{style}">
</head>
<body>
{bar}{page.body}
</body>
</html>
"""
