#!/usr/bin/env python3
"""man_page.py client|station PROGRAM PAGE: the page has each word and each option of the program's help, in its
place, none that is not there, the version that the program says it is, and nothing that man complains of."""

import collections
import pathlib
import re
import subprocess
import sys

import programs


def options_by_section(page):
    """The options that each section explains or names, without roff's marks. "" has those of the whole page."""
    found, section = collections.defaultdict(set), ""
    for line in page.splitlines():
        line = line.replace("\\-", "-")
        heading = re.match(r'\.S[HS] "?([\w-]+)', line)
        if heading:
            section = heading.group(1)
            found[section]    # a word without options is there, too
        options = set(re.findall(r"(?<![\w-])--?[a-z][a-z-]*", line))
        found[section] |= options
        found[""] |= options
    return found


def complaints(kind, program, page_file):
    help_program = getattr(programs, kind)(program)
    text = pathlib.Path(page_file).read_text(encoding="utf-8")
    page = options_by_section(text)
    if kind == "client":
        version = subprocess.run([program, "--version"], capture_output=True, text=True, check=True).stdout.strip()
        if f'"{version.capitalize()}"' not in text.splitlines()[0]:
            yield f"the page is not of {version}"
    expected = {word.name: {name for option in word.options for name in option.names} for word in help_program.words}
    expected["OPTIONS"] = help_program.option_names()
    for section, options in expected.items():
        if section not in page:
            yield f"no section of {section}"
        elif page[section] != options:
            yield f"{section}: the page has {sorted(page[section])}, the help {sorted(options)}"
    for option in sorted(page[""] - set().union(*expected.values())):
        yield f"the page names {option}, which the program does not take"
    words = [section for section in page if section and section not in expected and section.islower()]
    for word in words:
        yield f"the page has a word {word}, which the program does not take"
    shown = subprocess.run(["man", "--warnings", "-l", page_file], capture_output=True, text=True, check=True)
    yield from shown.stderr.splitlines()


found = list(complaints(*sys.argv[1:]))
print("\n".join(found))
sys.exit(1 if found else 0)
