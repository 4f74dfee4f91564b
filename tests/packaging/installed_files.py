#!/usr/bin/env python3
"""installed_files.py CMAKE BUILD LIBDIR COMPONENT LIST: installs a component and compares its files with a list.

LIST names a file a line, with {lib} for the folder of libraries and {config} for the kind of build. A folder with /** behind
it may hold what it likes, and the files that are named."""

import pathlib
import subprocess
import sys
import tempfile

cmake, build, lib, component, listed = sys.argv[1:]


def installed(component):
    with tempfile.TemporaryDirectory() as prefix:
        subprocess.run([cmake, "--install", build, "--prefix", prefix, "--component", component], check=True,
                       stdout=subprocess.DEVNULL)
        root = pathlib.Path(prefix)
        return {str(path.relative_to(root)) for path in root.rglob("*") if not path.is_dir()}


config = next(line.split("=")[1].strip().lower() for line in open(f"{build}/CMakeCache.txt", encoding="utf-8")
              if line.startswith("CMAKE_BUILD_TYPE:"))
expected = set(pathlib.Path(listed).read_text(encoding="utf-8").format(lib=lib, config=config).split())
free_folders = tuple(line.removesuffix("**") for line in expected if line.endswith("/**"))
expected = {line for line in expected if not line.endswith("/**")}
there = {path for path in installed(component) if path in expected or not path.startswith(free_folders)}
for path in sorted(expected - there):
    print(f"missing: {path}")
for path in sorted(there - expected):
    print(f"not in {listed}: {path}")
homeless = installed("Unspecified")
for path in sorted(homeless):
    print(f"in no component, so in no package: {path}")
sys.exit(1 if there != expected or homeless else 0)
