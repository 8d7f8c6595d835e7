"""The help contexts: from the IDL files, where each published name carries its number, and from the error page."""

import dataclasses
import re

IDL_FILES = [
    "src/product/idl/VrxCommon.idl",
    "src/product/idl/VrxTypeLib.idl",
    "src/product/idl/BmpInfo.idl",
    "companions/settings/VrxSettings.idl",
]

# The context of an error is this and its number, as the component raises it.
FIRST_ERROR = 10000

@dataclasses.dataclass
class Published:
    context: int
    name: str
    owner: str  # the class of a member or event, otherwise empty
    kind: str  # class, interface, event, member, enumeration, value, record


def declarations(text):
    """Each declaration with a help text: its attributes, its keyword and its name."""
    pattern = (
        r"\[([^\[\]]*helpstring[^\[\]]*)\]\s*"
        r"(coclass|interface|dispinterface|typedef enum|typedef struct|HRESULT|void) (\w+)"
    )
    return re.findall(pattern, text)


def read_file(text):
    published, owner, events = [], "", False
    kinds = {"coclass": "class", "typedef enum": "enumeration", "typedef struct": "record"}
    for attributes, keyword, name in declarations(text):
        found = re.search(r"helpcontext\((\d+)\)", attributes)
        if not found:
            raise SystemExit(f"{name} has no help context")
        context = int(found.group(1))
        if keyword in ("interface", "dispinterface"):
            owner, events = name.lstrip("_"), keyword == "dispinterface"
            published.append(Published(context, owner, "", "event set" if events else "interface"))
        elif keyword in kinds:
            published.append(Published(context, name, "", kinds[keyword]))
        else:
            published.append(Published(context, name, owner, "event" if events else "member"))
    return published


def read(repo):
    return [one for file in IDL_FILES for one in read_file((repo / file).read_text())]


def place_of(one):
    """The page and heading of a published name."""
    if one.kind in ("event", "event set"):
        return "docs/reference/events.html#" + one.name.lower()
    if one.kind == "enumeration":
        return "docs/reference/enumerations.html#" + one.name.lower()
    if one.kind == "record":
        return "docs/reference/BmpInfo.html"
    if one.kind == "member":
        return f"docs/reference/{one.owner}.html#{one.name.lower()}"
    return f"docs/reference/{one.name}.html"


def places(published, pages):
    """The page of each context. Fails for a page or a heading that there is not, and for one context of two places."""
    bodies = {page.name: page.body for page in pages}
    found = {}
    for one in published:
        place = place_of(one)
        name, _, heading = place.partition("#")
        if name not in bodies or (heading and f'id="{heading}"' not in bodies[name]):
            raise SystemExit(f"{one.name}: there is no {place}")
        if found.setdefault(one.context, place) != place:
            raise SystemExit(f"context {one.context} is both {found[one.context]} and {place}")
    for number in re.findall(r'<tr id="error-(\d+)">', bodies["docs/errors.html"]):
        found[FIRST_ERROR + int(number)] = f"docs/errors.html#error-{number}"
    return found
