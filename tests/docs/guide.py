# SPDX-License-Identifier: MIT
"""Reads docs/host-guide.md: the programs that its steps build up, and its reference tables."""
import os
import re

SOURCE = os.environ["SOURCE"]
BLOCK = re.compile(r"<!-- (.+?) -->\n```\w*\n(.*?)^```$", re.DOTALL | re.MULTILINE)


def text(name="host-guide.md"):
    with open(os.path.join(SOURCE, "docs", name), encoding="utf-8") as file:
        return file.read()


def sections(level):
    """The text below each heading of that level, by heading, up to the next of its rank."""
    parts = re.split(r"^(#{1,%d}) (.+)$" % level, text(), flags=re.MULTILINE)
    return {heading: body for marks, heading, body in zip(parts[1::3], parts[2::3], parts[3::3])
            if len(marks) == level}


def _edited(source, place, line, code):
    """The source with the code in place, or in front, of the one line that reads so."""
    lines = source.splitlines(keepends=True)
    found = [i for i, text in enumerate(lines) if text.strip() == line]
    if len(found) != 1:
        raise AssertionError(f"the guide says '{line}', which stands {len(found)} times")
    i = found[0]
    return "".join(lines[:i] + [code] + lines[i + (place == "in place of"):])


def steps():
    """For each step its name and all files as a reader has them after it."""
    files = {}
    for heading, body in sections(3).items():
        if not heading.startswith("Step "):
            continue
        for instruction, code in BLOCK.findall(body):
            if instruction.startswith("file: "):
                files[instruction[len("file: "):]] = code
                continue
            name, place, line = re.fullmatch(
                r"(\S+): (in place of|in front of): (.+)", instruction).groups()
            if f"`{line}`" not in body.replace("\n", " "):
                raise AssertionError(f"the text of '{heading}' does not name the line '{line}'")
            files[name] = _edited(files[name], place, line, code)
        yield heading, dict(files)


def helpers():
    """Headers that the guide gives outside of its steps."""
    behaviour = text().split("## How things behave")[1]
    return {instruction[len("file: "):]: code for instruction, code in BLOCK.findall(behaviour)}


def tables(section):
    """The tables of a section: for each row its cells by column, code marks removed."""
    rows, columns = [], None
    for line in section.splitlines():
        if not line.startswith("|"):
            columns = None
            continue
        cells = [cell.strip().strip("`").replace("\\|", "|")
                 for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        if columns is None:
            columns = cells
        elif not set(line) <= set("|-: "):
            rows.append(dict(zip(columns, cells)))
    return rows
