#!/usr/bin/env python3
"""check-exports.py LIB_DIR [--without-tests]

Checks what leaves the three libraries of a build: nothing but what is ours, no inside of a public class, and without tests
nothing that only they reach; and that what the headers at the top of the folders promise is there, the virtual tables and
type information of their classes too, and that no header gives a virtual function a body. Prints what is not so; exit status 1 when there is anything."""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))
import faces  # noqa: E402

OURS = r"(platform::|qw::|(QW|SU|HS)\w*)"
# What the compiler makes of a name, and the name.
MADE_OF = re.compile(r"^(vtable|VTT|typeinfo name|typeinfo|guard variable|construction vtable) for |"
                     r"^(non-virtual thunk|virtual thunk|covariant return thunk) to ")
OPERATORS = re.compile(rf"^(operator\W+|qHash)\({OURS}")
# In a class: a virtual function or a destructor with a body.
BODY_OF_VIRTUAL = re.compile(r"^[^\n]*(?:\bvirtual\b|\boverride\b|~\w+\(\))[^;{}]*(?:\{(?!\})|\{\}(?!\s*[,)])|= default)", re.MULTILINE)
RESOURCES = re.compile(r"^q(Init|Cleanup)Resources_")


def output_of(command, text=None):
    return subprocess.run(command, input=text, capture_output=True, text=True, check=True).stdout


def exported_by(library):
    """Demangled with parameters, and without."""
    names = "\n".join(line.split()[-1] for line in output_of(["nm", "-D", "--defined-only", library]).splitlines())
    return list(zip(output_of(["c++filt"], names).splitlines(), output_of(["c++filt", "-p"], names).splitlines()))


def is_ours(whole, name):
    named = MADE_OF.sub("", name)
    return bool(name == "__cxa_throw" or RESOURCES.match(name) or re.match(OURS, named) or OPERATORS.match(whole))


def wanted_of(header):
    """What a public header promises: beginnings of names."""
    for kind, is_class, name, body in faces.declarations(header):
        if kind or "operator" in name:
            continue
        yield name + ("::" if is_class else "")
        if re.search(r"\b(virtual|override|Q_OBJECT)\b", body):
            yield from (f"vtable for {name}", f"typeinfo for {name}", f"typeinfo name for {name}")
        if re.search(r"\bQ_(OBJECT|GADGET)\b", body):
            yield f"{name}::staticMetaObject"


def bodies_of_virtuals(header):
    for kind, is_class, name, body in faces.declarations(header):
        if not kind and is_class and re.search(r"\bvirtual\b|\boverride\b", body):
            for line in BODY_OF_VIRTUAL.findall(body):
                yield f"{header.name}: a virtual function or the destructor of {name} has its body in the header: {line.strip()}"


def only_for_tests():
    for header in faces.CORE.rglob("*.h"):
        for kind, is_class, name, _ in faces.declarations(header):
            if kind == "TEST_" and is_class:
                yield name + "::"


def complaints(lib_dir, with_tests):
    exported = {floor: exported_by(lib_dir / f"lib{floor}.so.A") for floor in faces.FLOORS}
    forbidden = () if with_tests else tuple(only_for_tests())
    for floor, symbols in exported.items():
        for whole, name in symbols:
            if not is_ours(whole, name):
                yield f"{floor} exports {whole}, which is not ours"
            elif "::Private::" in name or name.endswith("::Private"):
                yield f"{floor} exports {whole}, the inside of a public class: say Q_DECL_HIDDEN where it is defined"
            elif forbidden and MADE_OF.sub("", name).startswith(forbidden):
                yield f"{floor} exports {whole}, which only tests reach"
    names = {floor: [name for _, name in symbols] for floor, symbols in exported.items()}
    for header in faces.headers():
        floor = header.relative_to(faces.CORE).parts[0]
        for wanted in wanted_of(header):
            if not any(name.startswith(wanted) for name in names[floor]):
                yield f"{floor} lacks {wanted} of {header.name}"
        yield from bodies_of_virtuals(header)


def main():
    found = list(complaints(pathlib.Path(sys.argv[1]), "--without-tests" not in sys.argv))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
