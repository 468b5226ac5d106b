#!/usr/bin/python3
"""Holds the API's epytext against its description as values: compare.py FULL.json EPYTEXT

Every item is read by pydoctor's parser. It must read without a complaint, and say what the values say: the
same items in the same order, with the same texts, types and tags, and links to types that exist. Then the
text is damaged in several ways, each of which must be noticed.
"""
import json
import re
import sys

from pydoctor.epydoc.markup import epytext


def flowed(text):
    """Epytext takes any white space inside a text as one space."""
    return " ".join(text.split())


def shown(parsed):
    """The text of a parsed docstring; a link is "->NAME", any other mark-up shows as "<tag>"."""
    def walk(node):
        if isinstance(node, str):
            return node
        if node.tag == "link":
            return "->" + walk(node.children[0])
        inner = "".join(walk(child) for child in node.children)
        return inner if node.tag in ("epytext", "para", "name") else f"<{node.tag}>{inner}"
    return flowed(walk(parsed._tree)) if parsed._tree else ""


def read_item(item, complaints):
    """(heading, description, [(tag, argument, text)]) of an item."""
    heading, _, docstring = item.partition("\r\n")
    errors = []
    docstring = epytext.parse_docstring(docstring, errors)
    heading = epytext.parse_docstring(heading, errors)
    complaints += [f"{item[:60]!r}: {error}" for error in errors]
    fields = [(field.tag(), field.arg(), shown(field.body())) for field in docstring.fields]
    return shown(heading), shown(docstring), fields


def expected_items(full):
    """What read_item must return for each item."""
    registered = {described["name"] for described in full["types"]}

    def show(type, element=""):
        if element:
            return f"{ {'vector': 'list', 'map': 'dict'}[type] }[{show(element)}]"
        return "->" + type if type in registered else "bytearray" if type == "blob" else type

    def fields_of(tag, entries):
        for entry in entries:
            optional = "(optional) " if tag == "param" and entry["optional"] else ""
            yield tag, entry["name"], flowed(optional + entry["description"])
            yield "type", entry["name"], show(entry["type"]["type"], entry["type"]["elementType"])

    def tags_of(entry):
        return [("tags", None, ", ".join(entry["tags"]))] if entry["tags"] else []

    for function in full["functions"]:
        fields = list(fields_of("param", function["arguments"]))
        if function["returns"]["type"]:
            fields.append(("rtype", None, show(*function["returns"].values())))
        if function["threadSafe"]:
            fields.append(("threadsafe", None, "true"))
        if function["async"]:
            fields.append(("async", None, show(function["async"])))
        name = ".".join(filter(None, (function["nameSpace"], function["name"])))
        yield "function " + name, flowed(function["description"]), fields + tags_of(function)
    for described in full["types"]:
        fields = list(fields_of("ivar", described["fields"]))
        for value in described["values"]:
            fields.append(("cvar", value["name"], flowed(f"({value['value']}) {value['description']}")))
        fields.append(("size", None, str(described["size"])))
        kind = "enum " if described["values"] else "struct "
        yield kind + described["name"], flowed(described["description"]), fields + tags_of(described)
    for event in full["events"]:
        payload = ": " + show(*event["type"].values()) if event["type"]["type"] else ""
        yield "event " + event["name"] + payload, flowed(event["description"]), tags_of(event)


def complaints_about(text, full):
    complaints = []
    if re.search(r"(?<!\r)\n|\r(?!\n)", text) or not text.endswith("\r\n"):
        complaints.append("a line does not end with CR LF")
    for stray in re.findall(r".*[{}].*", re.sub(r"[EL]\{[^{}]*\}", "", text)):
        complaints.append(f"an unescaped brace: {stray}")
    items = [read_item(item, complaints) for item in text.split("\r\n\r\n")]
    expected = list(expected_items(full))
    if len(items) != len(expected):
        complaints.append(f"{len(items)} items for {len(expected)}")
    complaints += [f"read {item}, described {wanted}" for item, wanted in zip(items, expected) if item != wanted]
    links = set(re.findall(r"L\{([^{}]*)\}", text))
    complaints += [f"no type {name}" for name in links - {described["name"] for described in full["types"]}]
    return complaints, items


DAMAGES = {
    "a brace is not escaped": lambda text: re.sub(r"E\{[lr]b\}", lambda m: {"l": "{", "r": "}"}[m[0][2]], text),
    "an opening brace is not escaped": lambda text: text.replace("E{lb}", "{"),
    "a field is missing": lambda text: re.sub(r"@param [^\n]*\n", "", text, count=1),
    "a field has lost its colon": lambda text: re.sub(r"(@ivar \w+):", r"\1", text, count=1),
    "a description is a list": lambda text: re.sub(r"(function \w+\r\n)", r"\1- ", text, count=1),
    "a link leads nowhere": lambda text: text.replace("L{PlayerLoot}", "L{NoSuchLoot}"),
    "a line ends with LF": lambda text: text.replace("\r\n", "\n", 1),
    "an item is missing": lambda text: text[text.index("\r\n\r\n") + 4:],
    "nothing is there": lambda text: "",
}


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        full = json.load(file)
    with open(sys.argv[2], encoding="utf-8", newline="") as file:
        text = file.read()
    complaints, items = complaints_about(text, full)
    for complaint in complaints:
        print(complaint)
    for damage, inflict in DAMAGES.items():
        if not complaints_about(inflict(text), full)[0]:
            print(f"not noticed: {damage}")
            complaints.append(damage)
    fields = sum(len(item[2]) for item in items)
    if not complaints:
        print(f"pydoctor reads the epytext of {len(items)} items with {fields} fields.")
    return 1 if complaints or not fields else 0


if __name__ == "__main__":
    sys.exit(main())
