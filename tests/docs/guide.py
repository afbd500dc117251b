# SPDX-License-Identifier: MIT
"""Reads docs/host-guide.md: the programs that it lets its reader write, and its reference tables.
Called with a folder, it writes each program into a folder there and prints the programs' names."""
import os
import pathlib
import re
import sys

SOURCE = os.environ["SOURCE"]
BLOCK = re.compile(r"<!-- (.+?) -->\n```\w*\n(.*?)^```$", re.DOTALL | re.MULTILINE)


def text(name="host-guide.md"):
    with open(os.path.join(SOURCE, "docs", name), encoding="utf-8") as file:
        return file.read()


def sections():
    """The text below each heading, by heading, up to the next; those of the fourth rank are text."""
    parts = re.split(r"^#{1,3} (.+)$", text(), flags=re.MULTILINE)
    return dict(zip(parts[1::2], parts[2::2]))


def tables(section, column):
    """The rows of a section's tables that have such a column: cells by column, code marks removed."""
    rows, columns = [], None
    for line in sections()[section].splitlines():
        cells = [cell.strip().strip("`").replace("\\|", "|")
                 for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        if columns and not set(line) <= set("|-: "):
            rows.append(dict(zip(columns, cells)))
        columns = cells and (columns or cells)
    return [row for row in rows if column in row]


def edited(source, place, line, code):
    """The source with the code in place, or in front, of the one line that reads so."""
    lines = source.splitlines(keepends=True)
    (i,) = (i for i, text in enumerate(lines) if text.strip() == line)
    return "".join(lines[:i] + [code] + lines[i + (place == "in place of"):])


def promises(headers):
    """A program with the guide's headers that holds its bindings and records to the compiler."""
    checks = [f"static_assert({row['Call']} == {row['Binding']} && {row['Mask']} <= anyModifier);"
              for row in tables("Bindings", "Call")]
    for row in tables("Records", "Field"):
        kind, owner, field = row["Type"], *row["Field"].rsplit("::", 1)
        checks += [f"static_assert(std::is_same_v<decltype({owner}::{field}), {kind}>);",
                   f"assert({owner}().{field} == {kind}({row['Default']}));"]
    includes = ["<cassert>", "<type_traits>", '"GL/camera.h"', '"GL/mouse.h"',
                *(f'"{name}"' for name in headers)]
    return "\n".join([*("#include " + name for name in includes), "int main() {", *checks, "}", ""])


def programs():
    """The files of each program: the steps, as a reader has them after each, the README's host, and
    the promises with the headers that the guide gives."""
    files, headers = {}, {}
    for heading, body in sections().items():
        step = re.match(r"Step (\d+):", heading)
        for instruction, code in BLOCK.findall(body):
            name, rest = instruction.split(": ", 1)
            if name == "file":
                (files if step else headers)[rest] = code
            elif name != "from":
                place, line = rest.split(": ", 1)
                assert f"`{line}`" in body.replace("\n", " "), f"{heading} does not name '{line}'"
                files[name] = edited(files[name], place, line, code)
        if step:
            yield "step" + step[1], files
    readme = re.search(r"^```cpp\n(.*?)^```$", text("../README.md"), re.DOTALL | re.MULTILINE)[1]
    yield "readme", {**files, "main.cpp": readme}
    cmake = files["CMakeLists.txt"].replace("main.cpp", "main.cpp menu.h")
    yield "promises", {**headers, "CMakeLists.txt": cmake, "main.cpp": promises(headers)}


if __name__ == "__main__":
    for program, contents in programs():
        print(program)
        for name, content in contents.items():
            file = pathlib.Path(sys.argv[1], program, name)
            file.parent.mkdir(parents=True, exist_ok=True)
            if name == "CMakeLists.txt":
                content = re.sub(r"\bfirst\b", program, content)
            if not file.exists() or file.read_text() != content:  # else it is not compiled again
                file.write_text(content)
