#!/usr/bin/env python3
"""Compares the export table of a shared library with a list of names.

usage: check_exports.py TOOL LIBRARY LIST

TOOL is nm for a library of this system, objdump for a DLL. The list has one demangled name a line; lines that start
with "#" are comments. With "-" as LIST the names are printed, to make a new list after a wanted change.
"""
import os
import re
import subprocess
import sys


def output(*command, text=None):
    return subprocess.run(command, input=text, check=True, capture_output=True, text=True).stdout


def names_of_dll(objdump, library):
    table = output(objdump, "-p", library)
    names = re.findall(r"^\t\[ *\d+\] (\S+)$", table.split("[Ordinal/Name Pointer] Table")[1], re.MULTILINE)
    return output("c++filt", text="\n".join(names)).splitlines()


def names_of_elf(nm, library):
    return [line.split(" ", 2)[2] for line in output(nm, "-D", "--defined-only", "-C", library).splitlines()]


def exported_names(tool, library):
    names = names_of_dll(tool, library) if "objdump" in os.path.basename(tool) else names_of_elf(tool, library)
    # One type has two spellings, by the demangler.
    return {name.replace("std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
                         "std::string").replace("[abi:cxx11]", "") for name in names}


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
