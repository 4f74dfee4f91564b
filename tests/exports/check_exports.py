#!/usr/bin/env python3
"""Compares the export table of a shared library with a list of names.

usage: check_exports.py NM LIBRARY LIST

The list has one demangled name a line; lines that start with "#" are comments. With "-" as LIST the names are
printed, to make a new list after a wanted change.
"""
import subprocess
import sys


def exported_names(nm, library):
    table = subprocess.run([nm, "-D", "--defined-only", "-C", library], check=True, capture_output=True,
                           text=True).stdout
    names = set()
    for line in table.splitlines():
        name = line.split(" ", 2)[2]
        # One type has two spellings, by the demangler.
        name = name.replace("std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
                            "std::string").replace("[abi:cxx11]", "")
        names.add(name)
    return names


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    names = exported_names(sys.argv[1], sys.argv[2])
    if sys.argv[3] == "-":
        print("\n".join(sorted(names)))
        return
    with open(sys.argv[3], encoding="utf-8") as file:
        wanted = {line.rstrip("\n") for line in file if line.strip() and not line.startswith("#")}
    for name in sorted(names - wanted):
        print("exported, but not in the list:", name)
    for name in sorted(wanted - names):
        print("in the list, but not exported:", name)
    sys.exit(0 if names == wanted else 1)


main()
