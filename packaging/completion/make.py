#!/usr/bin/env python3
"""make.py CLIENT STATION FOLDER: writes the completion of both programs for bash and zsh, made from their help."""

import pathlib
import string
import sys

import programs

# What the help calls a value, and what a shell offers for it.
BASH_KINDS = {"FOLDER": "folders", "FILE": "files", "KEYFILE": "files", "FILE.json": "requests"}
ZSH_KINDS = {"FOLDER": "_files -/", "FILE": "_files", "KEYFILE": "_files", "FILE.json": '_files -g "*.json(-.)"'}


def bash(program):
    def values(options, word):
        for option in options:
            offer = "words " + " ".join(option.choices) if option.choices else BASH_KINDS.get(option.value, "nothing")
            if option.value:
                yield f"        {'|'.join(f'{word}:{name}' for name in option.names)}) echo {offer} ;;"

    def cases(pairs):
        return "\n".join(f"        {name}) echo {text} ;;" for name, text in pairs if text)

    every_value = [line for word in program.words for line in values(word.options, word.name)]
    every_value += values(program.options, "*")
    return {
        "program": program.name,
        "function": "_" + program.name.replace("-", "_"),
        "words": " ".join(word.name for word in program.words),
        "options": " ".join(name for option in program.options for name in option.names),
        "word_options": cases((word.name, " ".join(n for o in word.options for n in o.names)) for word in program.words),
        "operands": cases((word.name, bash_operand(word.operand)) for word in program.words),
        "values": "\n".join(every_value),
    }


def bash_operand(operand):
    return f"words {operand}" if operand.islower() else BASH_KINDS.get(operand, "")


def zsh_quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def zsh_option(option):
    text = option.text.replace("[", "\\[").replace("]", "\\]").replace(":", "\\:")
    excluded = f"({' '.join(option.names)})" if len(option.names) > 1 else ""
    explained = f"[{text}]" if text else ""
    action = "(" + " ".join(option.choices) + ")" if option.choices else ZSH_KINDS.get(option.value, "")
    value = f":{option.value}:{action}" if option.value else ""
    sign = "=" if option.value else ""
    return " ".join(zsh_quoted(f"{excluded}{name}{sign}{explained}{value}") for name in option.names)


def zsh_word(word):
    lines = [zsh_option(option) for option in word.options]
    if word.operand.islower():
        lines.append(zsh_quoted(f"1:word:({word.operand})"))
    elif word.operand:
        lines.append(zsh_quoted(f"*:{word.operand}:{ZSH_KINDS.get(word.operand, '')}"))
    return f"        {word.name}) own=({' '.join(lines)}) ;;"


def zsh(program):
    described = (f"{word.name}:{word.text}" for word in program.words)
    return {
        "program": program.name,
        "options": "\n        ".join(zsh_option(option) for option in program.options),
        "words": "\n        ".join(zsh_quoted(text) for text in described),
        "word_options": "\n".join(zsh_word(word) for word in program.words),
    }


class Template(string.Template):
    delimiter = "@"     # a dollar means something to the shells


def main():
    client, station, folder = sys.argv[1:]
    here = pathlib.Path(__file__).parent
    for program in (programs.client(client), programs.station(station)):
        for shell, values, name in (("bash", bash, program.name), ("zsh", zsh, "_" + program.name)):
            target = pathlib.Path(folder) / shell / name
            target.parent.mkdir(parents=True, exist_ok=True)
            text = (here / f"{shell}.in").read_text(encoding="utf-8")
            target.write_text(Template(text).substitute(values(program)), encoding="utf-8")


main()
