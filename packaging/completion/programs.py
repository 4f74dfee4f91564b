"""What the programs take, read from the help that they print."""

import dataclasses
import re
import subprocess


@dataclasses.dataclass
class Option:
    names: list          # ["-h", "--help"]
    value: str = ""      # what the help calls its value, "FOLDER"; empty for a switch
    choices: list = dataclasses.field(default_factory=list)
    text: str = ""


@dataclasses.dataclass
class Word:
    name: str
    text: str
    options: list
    operand: str = ""    # what the help calls what stands behind the word: "FILE.json", "TASK", or nothing; in small
                         # letters: that very text


@dataclasses.dataclass
class Program:
    name: str
    options: list        # those that go with every word
    words: list

    def option_names(self):
        return {name for option in self.options for name in option.names}


def help_of(program, *words):
    return subprocess.run([program, *words, "--help"], check=True, capture_output=True, text=True).stdout


def client(program):
    """The client's help: its own, and that of each of its words."""
    sections = _sections(help_of(program))
    words = []
    for name, text in _entries(sections["Subcommands"]):
        own = _sections(help_of(program, name))
        operands = [left.split() for left, _ in _entries(own.get("Positionals", []))]
        options = [option for option in _options(own["Options"]) if "--help" not in option.names]
        words.append(Word(name, text, options, operands[0][1] if operands else ""))
    return Program("fetchyard", _options(sections["Options"]), words)


def station(program):
    """The station's help: a line or two of use a word, and behind them what the word is for."""
    words = {}
    for use, text in re.findall(r"^  (\w.*(?:\n {7}.*)*)\n((?: {6}\S.*\n)+)", help_of(program), re.M):
        name, *rest = use.split()
        options = [Option([option], value) for option, value in re.findall(r"(--[a-z-]+)(?: ([^\s\]]+))?", use)]
        operand = rest[0] if not rest[0].startswith("-") else ""
        if name not in words:
            words[name] = Word(name, " ".join(text.split()), [], operand)
        known = {option.names[0] for option in words[name].options}
        words[name].options += [option for option in options if option.names[0] not in known]
        if words[name].operand != operand:
            words[name].operand = "FILE"    # a folder in one use, a file in the other
    for word in words.values():
        for option in word.options:
            option.value = _station_value(option)
    return Program("fetchyard-station", [Option(["-h", "--help"], text="Print this help message and exit")],
                   list(words.values()))


def _station_value(option):
    if re.fullmatch(r"[0-9]+|N", option.value):    # the help shows what it is if nothing is said
        return "NUMBER"
    if re.match(r"[0-9]", option.value):
        return "ADDRESS"
    return "FOLDER" if option.value == "DIR" else option.value


def _sections(text):
    """Lines of the help by the heading above them."""
    sections, lines = {}, []
    for line in text.splitlines():
        if re.fullmatch(r"[A-Z]\w+:", line):
            lines = sections.setdefault(line[:-1], [])
        else:
            lines.append(line)
    return sections


def _entries(lines):
    """Pairs of what stands left and right; a long left side has its right one on the next line."""
    entries = []
    for line in lines:
        if not line.strip():
            continue
        if re.match(r" {3,}", line):
            entries[-1][1] = (entries[-1][1] + " " + line.strip()).strip()
        else:
            left, _, right = re.sub(r"^(\S.*?) {2,}", "\\1\0", line.strip()).partition("\0")
            entries.append([left, right])
    return entries


def _options(lines):
    options = []
    for left, text in _entries(lines):
        names, _, value = left.partition(" ")
        value = value.split(" ")[0].split("=fetchyard")[0]
        value, _, choices = value.partition(":")
        options.append(Option(names.split(","), value, [word for word in choices.strip("{}").split(",") if word], text))
    return options
