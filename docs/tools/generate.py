"""Writes the pages of the documentation that are made from the sources: the requests, from their schemas, and the
states and error codes, from the code.

generate.py          writes them
generate.py --check  ends with 1 and names the pages that are not as the sources say
"""
import json
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
MADE = "<!-- Made by docs/tools/generate.py: change what it is made from. -->\n"
STATES = {
    "Unstarted": "handed over, waits for its turn",
    "Downloading": "at work",
    "Finished": "done",
    "Failed": "ended with an error, told with the state",
    "Stopped": "stopped on request",
    "Uploading": "at work, of a task that registers evidence",
    "UploadFinished": "done, of such a task",
    "UploadFailed": "ended with an error, of such a task",
    "UploadStopped": "stopped on request, of such a task",
    "TranscodingBegin": "stamping or transcoding has begun",
    "TranscodingEnd": "it has ended; the task goes on",
    "Deleted": "deleted on request; the folder of an export is its host's to remove",
}
MODULES = {0: "The system", 20: "This system's own", 21: "HTTP statuses", 22: "The transfer library",
           23: "Answers that can't be used", 24: "The station"}


def escaped(text):
    return str(text).replace("|", "\\|").replace("\n", " ")


class Schema:
    """The members of a request, one row each, with how deep they lie."""

    def __init__(self, path):
        self.whole = json.loads(path.read_text())
        self.rows = []
        self.walk(self.whole, 0)

    def resolved(self, node):
        if "$ref" not in node:
            return node
        target = self.whole
        for step in node["$ref"].lstrip("#/").split("/"):
            target = target[step]
        return {**target, **{key: value for key, value in node.items() if key != "$ref"}}

    def walk(self, node, depth):
        required = node.get("required", [])
        for name, member in node.get("properties", {}).items():
            member = self.resolved(member)
            self.rows.append((depth, name, self.kind(member), name in required, member.get("description", "")))
            self.walk(member, depth + 1)
            if "items" in member:
                self.walk(self.resolved(member["items"]), depth + 1)

    @staticmethod
    def kind(member):
        words = member.get("type", "")
        if words == "array" and "type" in member.get("items", {}):
            words = f"array of {member['items']['type']}s"
        if "enum" in member:
            words = ", ".join(json.dumps(value) for value in member["enum"])
        elif "const" in member:
            words = json.dumps(member["const"])
        elif member.get("minimum", -(1 << 31)) != -(1 << 31):
            words += f" from {member['minimum']}"
        return words or "any"


def requests_page():
    parts = ["# Members of the requests\n", MADE,
             "What each member means, from the schemas that `fetchyard check` holds a request against. A bold name must be\n"
             "there; what lies in an object, or in each entry of an array, follows it. How requests behave is told [beside them](README.md).\n"]
    for path in sorted((TOP / "docs/requests").glob("*.schema.json")):
        schema = Schema(path)
        parts.append(f"## {schema.whole['title']}\n\n[{path.name}]({path.name})\n")
        rows = ["| Member | Kind | Meaning |", "|---|---|---|"]
        for depth, name, kind, is_required, meaning in schema.rows:
            shown = "&emsp;" * depth + (f"**`{name}`**" if is_required else f"`{name}`")
            rows.append(f"| {shown} | {escaped(kind)} | {escaped(meaning)} |")
        parts.append("\n".join(rows) + "\n")
    return "\n".join(parts)


def states():
    text = (TOP / "interfaces/ZellTaskKit/DownloadTypes.h").read_text()
    body = re.search(r"enum DownloadState : int \{(.*?)\};", text, re.S).group(1)
    return [(int(number), name) for name, number in re.findall(r"(\w+) = (\d+),", body)]


def errors():
    text = (TOP / "siblings/ZellErrorText/ErrorTable.cpp").read_text()
    body = re.search(r"constexpr Entry kTable\[\] = \{(.*?)\n\};", text, re.S).group(1)
    return [(int(module), int(code), words) for module, code, words in
            re.findall(r'\{(\d+), (\d+), "([^"]*)"\}', body)]


def states_page():
    parts = ["# States and error codes\n", MADE,
             "## States\n\nWhat an observer gets, in order for each task. A task that registers evidence has 7, 10, 11 and 12 in the\n"
             "place of 1, 4, 5 and 6.\n",
             "| State | Name | Meaning |\n|---|---|---|\n" +
             "\n".join(f"| {number} | `{name}` | {STATES[name]} |" for number, name in states()) + "\n",
             "## Error codes\n\nAn error is a pair: the module that speaks, and its code. A pair that is not here gets words that name both\n"
             "numbers. Module 0 is the operating system and has its words. In a shell:\n",
             "```sh\nfetchyard --station http://127.0.0.1:1 --data data run alarms.json > said.txt || true\n"
             "grep \"The server can't be reached.\" said.txt      # module 22, code 7\n```\n"]
    by_module = {}
    for module, code, words in errors():
        by_module.setdefault(module, []).append((code, words))
    for module, rows in by_module.items():
        parts.append(f"### {module}: {MODULES[module]}\n")
        parts.append("| Code | Words |\n|---|---|\n" + "\n".join(f"| {code} | {escaped(words)} |" for code, words in rows) + "\n")
    return "\n".join(parts)


PAGES = {"docs/requests/members.md": requests_page, "docs/states-and-errors.md": states_page}


def main():
    stale = []
    for name, make in PAGES.items():
        path, text = TOP / name, make()
        if sys.argv[1:] != ["--check"]:
            path.write_text(text)
        elif not path.exists() or path.read_text() != text:
            stale.append(name)
    if stale:
        sys.exit("not as the sources say: " + ", ".join(stale) + "; run docs/tools/generate.py")


if __name__ == "__main__":
    main()
