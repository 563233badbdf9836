"""The public headers: what stands at the top of a folder of QWCore and is installed."""
import pathlib
import re

CORE = pathlib.Path(__file__).resolve().parent.parent / "QWCore"
FLOORS = ["QWPlatform", "QWBase", "QWUtilities"]
# What puts the product together stands at the top of its folder, too.
NOT_INSTALLED = {"QWUtilities/Categories.h"}
# Rooms that belong to no folder but to the top of their floor.
ROOMS_OF_THE_FLOOR = {"QWPlatform/machine"}
# Folders of QWBase with a face of their own; the others are its rooms.
FOLDERS_OF_QWBASE = {"QWBase/tables"}

DECLARED = re.compile(r"(?<!friend )\b[A-Z]+?_(?P<kind>(SHARED_|TEST_)?)EXPORT\b")
SCOPES = re.compile(r"\bnamespace\s+(?P<namespace>[\w:]+)\s*\{|"
                    r"\b(class|struct)\s+([A-Z]+_EXPORT\s+)?(?P<type>\w+)[^;{}()]*\{|[{}]")


def folder_of(place):
    """The folder whose face and rooms these are: "QWPlatform/appkit", "QWBase", "QWBase/tables", "QWUtilities/shell"."""
    folder = "/".join(place.parts[:2])
    if len(place.parts) == 2 or str(place.parent) in ROOMS_OF_THE_FLOOR:
        return place.parts[0]
    return "QWBase" if place.parts[0] == "QWBase" and folder not in FOLDERS_OF_QWBASE else folder


def is_face(place):
    """Of a path below QWCore: whether it stands at the top of a folder."""
    return str(place.parent) == folder_of(place) and str(place) not in NOT_INSTALLED


def headers():
    return sorted(path for path in CORE.rglob("*.h") if is_face(path.relative_to(CORE)))


def scope_of(before):
    """The namespaces and classes that are open at the end of a text: "platform::System::"."""
    names = []
    for match in SCOPES.finditer(before):
        if match[0] == "}":
            names.pop()
        else:
            names.append(match["namespace"] or match["type"] or "")
    return "".join(name + "::" for name in names if name)


def body_of(after):
    """From the first brace to the one that closes it."""
    depth = 0
    for match in re.finditer(r"[{}]", after):
        depth += 1 if match[0] == "{" else -1
        if depth == 0:
            return after[:match.end()]
    return after


def declarations(header):
    """Each name that is declared with an export macro: its kind ("", "SHARED_", "TEST_"), whether it is a class, the name
    with its scope, and the text of the class."""
    text = re.sub(r"//.*", "", header.read_text(encoding="utf-8"))
    for match in DECLARED.finditer(text):
        before, after = text[:match.start()], text[match.end():]
        is_class = bool(re.search(r"\b(class|struct)\s+$", before))
        name = re.match(r"\s*(\w+(?:::\w+)*)", after) if is_class else re.search(r"(\w+|operator\W+?)\s*\(", after)
        yield match["kind"], is_class, scope_of(before) + name.group(1), body_of(after) if is_class else ""
