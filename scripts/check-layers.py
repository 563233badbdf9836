#!/usr/bin/env python3
"""Checks who includes what. Prints each offending include; exit status 1 when there is any.

- Arrows between the floors only point down, and between subsystems only where SUBSYSTEMS draws one.
- What stands at the top of a folder is its face, which is installed. A face includes only faces and Qt.
- Below stand rooms. What is in a room is included from its own folder only, and from the floors above where SHARED
  names it. The Linux machine, which makes everything that the platform promises, may look into the platform's rooms.
- Examples include faces only.
- No folder is a hall.
"""
import re
import sys

sys.dont_write_bytecode = True
from faces import CORE, FLOORS, folder_of, is_face  # noqa: E402

ROOT = CORE.parent
MOST_FILES = 30
MOST_TEST_FILES = 60
# Inside the product: subsystem -> subsystems that it may include.
SUBSYSTEMS = {
    "plugins": {"shell"},
    "shortcuts": set(),
    "controllers": set(),
    "helpdesk": {"shell"},
    "recorder": set(),
    "shell": set(),
}
# Room -> headers in it that other folders of the library, our programs and the floors above may include; hosts may not.
SHARED = {
    "QWPlatform/appkit/events": {"ModifierFlags", "PendingInput"},
    "QWPlatform/appkit/menus": {"KeyEquivalent", "MenuEvents", "MenuKeys"},
    "QWPlatform/appkit/responders": {"FirstResponder", "WidgetTree"},
    "QWPlatform/appkit/toolbar": {"Toolbar", "ToolbarDelegate", "ToolbarItem"},
    "QWPlatform/appkit/web": {"BrowserLinks"},
    "QWPlatform/appkit/windows": {"AccessibleCell", "Compositing", "InstanceLink", "Sheet", "WindowHiding",
                                  "WindowOpenState"},
    "QWPlatform/devices/components": {"ComponentRegistry", "ResourceFork"},
    "QWPlatform/devices/input": {"KeyboardState", "RemoteReceiver"},
    "QWPlatform/devices/serial": {"SerialLines", "SerialRegistry"},
    "QWPlatform/foundation/files": {"FileDescriptor", "LockFile", "RegularFile"},
    "QWPlatform/foundation/lists": {"PropertyListScalars", "PropertyListValues", "Utf8", "XmlPropertyListReader", "XmlPropertyListScanner",
                                         "XmlPropertyListText"},
    "QWPlatform/foundation/processes": {"ChildProcesses"},
    "QWPlatform/machine": {"SystemServices"},
    "QWPlatform/network/services": {"NetService", "NetServiceBrowser", "NetServices", "SocketAddress"},
    "QWPlatform/network/transfers": {"Proxies", "StrictUrl", "UrlDownload"},
    "QWBase/application": {"ApplicationCategories", "ApplicationCategory"},
    "QWBase/files": {"QWPathStrings", "QWResourceFile"},
    "QWBase/menus": {"SortedMenuBuilder"},
    "QWBase/requests": {"QWDataDigest", "QWMultipartRequest"},
    "QWBase/records": {"StateWriter"},
}
# Who puts things together: file -> rooms that it may name besides.
ASSEMBLY = {
    "QWPlatform/System.cpp": {"QWPlatform/linux/system"},
    "QWUtilities/Categories.cpp": {"QWUtilities/shell/launch", "QWUtilities/shortcuts/dispatch"},
}
# What plays a host for pictures of its windows looks behind them.
BEHIND_THE_WINDOWS = "examples/host/tour"
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def included_files(path):
    """Line, text and place below QWCore of each include that leads there."""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        beside = [path.parent / match.group(2)] if match.group(1) == '"' else []
        for candidate in [*beside, CORE / match.group(2)]:
            if candidate.is_file() and CORE in candidate.resolve().parents:
                yield number, match.group(2), candidate.resolve().relative_to(CORE)
                break


def is_shared(place):
    return place.stem in SHARED.get(str(place.parent), ())


def complaint_about_face(source, target):
    if source.suffix == ".h" and is_face(source) and not is_face(target):
        return "what is installed must not include what is not"
    return None


def complaint_about_room(source, target):
    if is_face(target) or is_shared(target) or folder_of(source) == folder_of(target):
        return None
    if source.parts[:2] == ("QWPlatform", "linux") and target.parts[0] == "QWPlatform":
        return None
    if str(target.parent) in ASSEMBLY.get(str(source), ()):
        return None
    return f"{target.parent} is private to {folder_of(target)}"


def complaint_about_arrow(source, target):
    if FLOORS.index(target.parts[0]) > FLOORS.index(source.parts[0]):
        return f"{source.parts[0]} must not look up to {target.parts[0]}"
    if source.parts[0] == target.parts[0] == "QWUtilities" and len(source.parts) > 2 and len(target.parts) > 2:
        own, other = source.parts[1], target.parts[1]
        if own != other and other not in SUBSYSTEMS.get(own, set()):
            return f"{own} must not include {other}"
    return None


def complaints():
    for path in sources_below("QWCore"):
        source = path.relative_to(CORE)
        for number, name, target in included_files(path):
            reason = (complaint_about_arrow(source, target) or complaint_about_face(source, target)
                      or complaint_about_room(source, target))
            if reason:
                yield f"QWCore/{source}:{number}: {name}: {reason}"
    for path in [*sources_below("examples"), *sources_below("validators"), *sources_below("tools")]:
        place = path.relative_to(ROOT)
        is_host = place.parts[0] == "examples"
        for number, name, target in included_files(path):
            if is_face(target) or (not is_host and is_shared(target)) or str(place).startswith(BEHIND_THE_WINDOWS):
                continue
            yield f"{place}:{number}: {name}: hosts include what is installed, our programs what is shared"


def sources_below(folder):
    return [path for path in sorted((ROOT / folder).rglob("*")) if path.suffix in {".h", ".cpp"}]


def halls():
    for top, most in (("QWCore", MOST_FILES), ("tests", MOST_TEST_FILES)):
        for folder in sorted({path.parent for path in sources_below(top)}):
            files = sum(path.suffix in {".h", ".cpp"} for path in folder.iterdir())
            if files > most:
                yield f"{folder.relative_to(ROOT)}: {files} files, which is a hall: {most} at most"


def main():
    failures = [*complaints(), *halls()]
    print(*failures, sep="\n", end="\n" if failures else "")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
