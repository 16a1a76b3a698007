#!/usr/bin/env python3
"""Writes a program that uses the whole surface listed in surface.txt: it names every element
class, collection, visitor, choice interface and typed link, and calls every make operation of
the factory. Compiling it checks the installed headers; running it checks the operations.

    make_consumer.py SURFACE OUTPUT
"""

import sys


def main(surface_path, output_path):
    entries = []
    for line in open(surface_path):
        line = line.strip()
        if line and not line.startswith("#"):
            kind, name = line.split()
            entries.append((kind, name))
    out = ["// Written by make_consumer.py from surface.txt.",
           "#include <TesselODX220Model.h>", "", "#include <type_traits>", "",
           "namespace {", "", "using namespace NODX220;", ""]
    for kind, name in entries:
        if kind == "make":
            out.append(f"static_assert(std::is_base_of<VOdxElement, V{name}>::value, \"V{name}\");")
        elif kind == "collection":
            out.append(f"static_assert(std::is_class<{name}>::value, \"{name}\");")
        elif kind == "visitor":
            out.append(f"static_assert(std::is_polymorphic<{name}>::value, \"{name}\");")
        elif kind == "choice":
            out.append(f"static_assert(std::is_polymorphic<{name}>::value, \"{name}\");")
        elif kind == "link":
            out.append(f"static_assert(std::is_base_of<VOdxElement, {name}>::value, \"{name}\");")
    out += ["", "} // namespace", "",
            "// Makes and ends one of every element and collection under the parent; the count.",
            "int UseEveryMakeOperation(NODX220::VOdxElement& parent)", "{",
            "    using namespace NODX220;", "    VOdxFactory& factory = VOdxFactory::Instance();",
            "    int made = 0;"]
    for kind, name in entries:
        if kind == "make":
            out.append(f"    factory.DestroyElement(&factory.Make{name}(parent, TAG_UNSET));")
            out.append("    ++made;")
        elif kind == "make-collection":
            out.append(f"    factory.DestroyElement(&factory.Make{name}(parent));")
            out.append("    ++made;")
    out += ["    return made;", "}", ""]
    with open(output_path, "w") as handle:
        handle.write("\n".join(out))
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:3]))
