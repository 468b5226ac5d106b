#!/usr/bin/env python3
"""Writes the reference pages of the documentation: reference.py OPENAPI MANUAL FOLDER

OPENAPI is the API document of the development host, MANUAL what `tav-loot-host manual` prints. FOLDER gets endpoints.md
and options.md.
"""
import json
import pathlib
import re
import sys

ENDPOINTS_HEAD = """# All endpoints and controls

What the development host serves, from its own API document, which is at `/_host/openapi.json`. How the plugin's endpoints
behave is in [The REST interface](../api.md), what the controls are for in [The development host](../development-host.md).
A failure is a [Problem](#problem).
"""
OPTIONS_HEAD = """# All options

From the definitions in the program; `tav-loot-host --help` and `man tav-loot-host` show the same. How they are used is in
[The development host](../development-host.md).
"""


def cell(text):
    """Text as a cell of a table, and as nothing but text."""
    return re.sub(r"([\\*_<|])", r"\\\1", text.replace("\n", " "))


def type_words(schema):
    """The type of a value in a few words; a named one leads to its description."""
    if "$ref" in schema:
        name = schema["$ref"].rpartition("/")[2]
        return f"[{name}](#{name.lower()})"
    if "const" in schema:
        return f"`{json.dumps(schema['const'])}`"
    if "enum" in schema:
        return " or ".join(f"`{json.dumps(value)}`" for value in schema["enum"])
    for choices in ("anyOf", "oneOf"):
        if choices in schema:
            return " or ".join(type_words(choice) for choice in schema[choices])
    kind = schema.get("type", "any value")
    if kind == "array":
        return "list of " + type_words(schema.get("items", {}))
    if kind == "object":
        if "properties" in schema:
            return "object with " + ", ".join(f"`{name}`: {type_words(part)}" for name, part in schema["properties"].items())
        values = schema.get("additionalProperties")
        return "map of " + type_words(values) if isinstance(values, dict) else "object"
    return " or ".join(kind) if isinstance(kind, list) else schema.get("format", kind)


def row(name, schema, *more, description=""):
    text = cell(description or schema.get("description", ""))
    return f"| `{name}` | {' | '.join([*more, type_words(schema), text])} |"


def content_words(content):
    """The types of a body, without the content types when JSON is all there is to say."""
    kinds = {kind: type_words(part["schema"]) for kind, part in content.items()}
    same = len(set(kinds.values())) == 1
    if same and "application/json" in kinds:
        return kinds["application/json"]
    return ", ".join(f"{words} as `{kind}`" for kind, words in kinds.items())


def operation_lines(method, path, operation):
    yield f"### {method.upper()} {path}\n"
    if "summary" in operation:
        yield cell(operation["summary"]).rstrip(".") + ".\n"
    parameters = operation.get("parameters", [])
    if parameters:
        yield "| Parameter | In | Required | Type | |\n|---|---|---|---|---|"
        for parameter in parameters:
            schema = parameter.get("schema") or parameter["content"]["application/json"]["schema"]
            required = "yes" if parameter["required"] else ""
            yield row(parameter["name"], schema, parameter["in"], required, description=parameter.get("description", ""))
        yield ""
    if "requestBody" in operation:
        body = operation["requestBody"]
        optional = "" if body["required"] else ", which may be left out"
        yield f"Body{optional}: {content_words(body['content'])}.\n"
    for status, response in operation["responses"].items():
        if "content" in response:
            yield f"Returns {status}: {content_words(response['content'])}.\n"
        elif status == "204":
            yield "Returns 204, without a body.\n"


def reachable(schemas, part):
    """The names of the schemas that a part of the document needs."""
    found, waiting = set(), [part]
    while waiting:
        value = waiting.pop()
        if isinstance(value, dict):
            name = str(value.get("$ref", "")).rpartition("/")[2]
            if name in schemas and name not in found:
                found.add(name)
                waiting.append(schemas[name])
            waiting += value.values()
        elif isinstance(value, list):
            waiting += value
    return found


def type_lines(name, schema):
    yield f"### {name}\n"
    if "description" in schema:
        yield cell(schema["description"]) + "\n"
    if "properties" not in schema:
        yield type_words(schema) + ".\n"
        return
    yield "| Member | Type | |\n|---|---|---|"
    for member, part in schema["properties"].items():
        yield row(member, part)
    yield ""


def endpoints_page(document):
    lines = [ENDPOINTS_HEAD]
    for tag in document["tags"]:
        lines.append(f"## {tag['description'].rstrip('.')}\n")
        for path, operations in document["paths"].items():
            for method, operation in operations.items():
                if tag["name"] in operation["tags"]:
                    lines += operation_lines(method, path, operation)
    schemas = document["components"]["schemas"]
    names = reachable(schemas, document["paths"]) | {"Problem"}
    lines.append("## Types\n")
    for name, schema in schemas.items():
        if name in names:
            lines += type_lines(name, schema)
    return "\n".join(lines).rstrip() + "\n"


def plain(text):
    """A line of the manual without its requests and fonts."""
    text = re.sub(r"\\f[BIR]", "", text)
    for escape, character in (("\\-", "-"), ("\\(aq", "'"), ("\\(ti", "~"), ("\\:", ""), ("\\&", ""), ("\\e", "\\")):
        text = text.replace(escape, character)
    return text


def options_page(manual):
    lines, source = [OPTIONS_HEAD], iter(manual.split(".SH OPTIONS", 1)[1].splitlines()[1:])
    lines.append("## tav-loot-host\n")
    in_table = in_example = False
    for line in source:
        if line == ".TP":
            if not in_table:
                lines.append("\n| Option | |\n|---|---|")
            in_table = True
            lines.append(f"| `{plain(next(source)).replace('|', ' ⏐ ')}` | {cell(plain(next(source)))} |")
            continue
        if in_table:
            lines.append("")
        in_table = False
        if line.startswith(".SS "):
            lines.append(f"\n## {plain(line[4:])}\n")
        elif line in (".EX", ".EE"):
            in_example = line == ".EX"
            lines.append("\n```" if in_example else "```\n")
        elif line == ".PP":
            lines.append("")
        elif not line.startswith("."):
            lines.append(plain(line) if in_example else cell(plain(line)))
    return re.sub(r"\n{3,}", "\n\n", "\n".join(lines)).rstrip() + "\n"


def main():
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[3])
    document = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    manual = pathlib.Path(sys.argv[2]).read_text(encoding="utf-8")
    (folder / "endpoints.md").write_text(endpoints_page(document), encoding="utf-8")
    (folder / "options.md").write_text(options_page(manual), encoding="utf-8")


if __name__ == "__main__":
    main()
