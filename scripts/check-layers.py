#!/usr/bin/env python3
"""Fails when a source file includes a header of a layer above its own.

The layers, lowest first: common; model; db, ops and formats side by side;
document; ui; the programs in app/. The symbolic-file library
(formats/library) stands on nothing of ours. ODBC headers belong to db/ alone.

    scripts/check-layers.py [SOURCE_ROOT]   (default: the src/ beside this script)

Prints one line per violation, "file:line: message", and exits 1 if any.
"""
import pathlib
import re
import sys

# What each folder may include, by the first part(s) of the included path.
ALLOWED = {
    "common": {"common"},
    "model": {"common", "model"},
    "db": {"common", "model", "db"},
    "ops": {"common", "model", "ops"},
    "formats": {"common", "model", "formats"},
    "formats/library": {"formats/library"},
    "document": {"common", "model", "db", "ops", "formats", "formats/library", "document"},
    "ui": {"common", "model", "db", "ops", "formats", "document", "ui"},
    "app/cli": {"common", "model", "db", "ops", "formats", "formats/library", "document", "app/cli"},
    "app/gui": {"common", "model", "db", "ops", "formats", "formats/library", "document", "ui", "app/gui"},
}
ODBC_HEADERS = {"sql.h", "sqlext.h", "sqltypes.h", "sqlucode.h", "odbcinst.h"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def layer_of(path):
    """The most specific layer folder that a path (a file, or an included
    header) lies in; None for a bare file name."""
    parts = pathlib.PurePosixPath(path).parts
    for depth in (2, 1):
        candidate = "/".join(parts[:depth])
        if len(parts) > depth and candidate in ALLOWED:
            return candidate
    return None


def check(root):
    violations = []
    for path in sorted(root.rglob("*")):
        if path.suffix not in {".h", ".cpp", ".c", ".y", ".l"} or not path.is_file():
            continue
        relative = path.relative_to(root)
        layer = layer_of(relative)
        if layer is None:
            violations.append(f"{relative}: outside every layer folder")
            continue
        text = path.read_text(encoding="latin-1")
        for number, line in enumerate(text.splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            bracket, header = match.groups()
            if bracket == "<":
                if header in ODBC_HEADERS and layer != "db":
                    violations.append(f"{relative}:{number}: ODBC header <{header}> outside db/")
                continue
            target = layer_of(header)
            if target is not None and target not in ALLOWED[layer]:
                violations.append(f"{relative}:{number}: {layer}/ may not include \"{header}\"")
    return violations


def main():
    default = pathlib.Path(__file__).resolve().parent.parent / "src"
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    violations = check(root)
    for violation in violations:
        print(violation)
    return 1 if violations else 0


if __name__ == "__main__":
    sys.exit(main())
