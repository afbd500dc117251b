# SPDX-License-Identifier: MIT
"""The guide's reference against the classes as they are: nothing missing, renamed or made up."""
import os
import re
import subprocess
import sys
import unittest

import guide
sys.path.append(os.path.join(guide.SOURCE, "examples", "python"))
import glwindow
from PyQt5.QtCore import QMetaMethod, QMetaObject, QObject, QPointF, QRectF, QSize, QSizeF
from PyQt5.QtGui import QKeySequence
from PyQt5.QtWidgets import QApplication

application = QApplication(["test"])
module = glwindow.Module(os.environ["MODULE"])
SECTIONS = guide.sections(3)
KINDS = {QMetaMethod.Signal: "Signal", QMetaMethod.Slot: "Slot"}


def made(name):
    if name == "Tile":
        return made("GLMultiWidget").AddTile(7)
    return module.make(name, module, "")


def signature(text):
    """`QObject* f(int a, QObject* b)` as (`QObject*`, `f(int,QObject*)`); a signal returns void."""
    result, name, arguments = re.fullmatch(r"(?:(\S+) )?(\w+)\((.*)\)", text).groups()
    types = [re.fullmatch(r"(.+?[*>]?)(?: \w+)?", a.strip()).group(1)
             for a in re.split(r",", arguments) if a]
    plain = bytes(QMetaObject.normalizedSignature(f"{name}({','.join(types)})")).decode()
    return result or "void", plain


def methods(meta, kind):
    own = (meta.method(i) for i in range(meta.methodOffset(), meta.methodCount()))
    return {(m.typeName(), bytes(m.methodSignature()).decode()) for m in own
            if KINDS.get(m.methodType()) == kind}


def shown(value):
    """A default as the guide writes it, with its type."""
    if isinstance(value, bool):
        return "bool", str(value).lower()
    if isinstance(value, (int, float)):
        return {"int"} if isinstance(value, int) else {"double", "float"}, f"{value:g}"
    if isinstance(value, (QSize, QSizeF)):
        return type(value).__name__, f"{value.width():g} x {value.height():g}"
    if isinstance(value, QPointF):
        return "QPointF", f"{value.x():g}, {value.y():g}"
    if isinstance(value, QRectF):
        return "QRectF", "{:g}, {:g}, {:g} x {:g}".format(*value.getRect())
    if isinstance(value, QKeySequence):
        return "QKeySequence", f'"{value.toString()}"'
    if isinstance(value, list):
        return "QVariantList", str(value)
    return "QString", f'"{value}"'


class Reference(unittest.TestCase):
    maxDiff = None

    def rows(self, section, kind):
        rows = [row for row in guide.tables(SECTIONS[section]) if kind in row]
        names = [row[kind] for row in rows]
        self.assertEqual(len(names), len(set(names)), f"{section} names a {kind} twice")
        return rows

    def test_signals_and_slots(self):
        for section in ("GLWindow", "GLWidget", "GLMultiWidget", "KeyAction", "MouseAction"):
            meta = made(section).metaObject()
            for kind in KINDS.values():
                with self.subTest(f"{section}, {kind}"):
                    written = {signature(row[kind]) for row in self.rows(section, kind)}
                    self.assertEqual(written, methods(meta, kind))

    def test_properties(self):
        for section in ("GLWindow", "GLWidget", "GLMultiWidget", "KeyAction", "MouseAction"):
            with self.subTest(section):
                thing = made(section)
                meta = thing.metaObject()
                own = [meta.property(i) for i in range(meta.propertyOffset(), meta.propertyCount())]
                facts = {(p.name(), p.typeName(), shown(p.read(thing))[1],
                          "host" if p.isWritable() else "module") for p in own}
                self.assertEqual({(row["Property"], row["Type"], row["Default"], row["Set by"])
                                  for row in self.rows(section, "Property")}, facts)

    def test_dynamic_properties(self):
        for section in ("GLWindow", "GLWidget", "GLMultiWidget", "Tile"):
            with self.subTest(section):
                thing = made(section)
                facts = set()
                for name in thing.dynamicPropertyNames():
                    kind, default = shown(thing.property(bytes(name).decode()))
                    facts.add((bytes(name).decode(), "int" if kind == {"int"} else kind, default))
                if section == "GLMultiWidget":  # what it shares with its base stands there
                    base = {bytes(name).decode() for name in made("GLWidget").dynamicPropertyNames()}
                    facts = {f for f in facts if f[0] not in base or f[0] == "enabled"}
                self.assertEqual({(row["Dynamic property"], row["Type"], row["Default"])
                                  for row in self.rows(section, "Dynamic property")}, facts)

    def test_records(self):
        """Types and defaults, by the compiler; and no field of a number or vector is left out."""
        program = ['#include <cassert>', '#include "GL/camera.h"', '#include "GL/mouse.h"',
                   '#include <type_traits>', 'int main() {']
        rows = self.rows("Records", "Field")
        for row in rows:
            owner, field = row["Field"].rsplit("::", 1)
            vector = row["Type"] == "Vector"
            default = "Vector(%s)" % row["Default"] if vector else f"{row['Type']}({row['Default']})"
            program += [f"static_assert(std::is_same_v<decltype({row['Field']}), {row['Type']}>);",
                        f"assert({owner}().{field} == {default});"]
        file = os.path.join(os.environ["SCRATCH"], "records")
        with open(file + ".cpp", "w", encoding="utf-8") as out:
            out.write("\n".join(program + ["}", ""]))
        includes = ["-I" + folder for folder in os.environ["INCLUDES"].split("|")]
        subprocess.run([os.environ["CXX"], "-std=c++17", "-fPIC",
                        "-DQT_NO_VERSION_TAGGING", *includes, file + ".cpp", "-o",
                        file], check=True)
        subprocess.run([file], check=True)
        written = {row["Field"] for row in rows}
        for header in ("camera.h", "mouse.h"):
            owner = None
            with open(os.path.join(guide.SOURCE, "GL", header), encoding="utf-8") as text:
                for line in text:
                    found = re.match(r"struct (?:\w+EXPORT )?(\w+) \{", line)
                    owner = found.group(1) if found else None if line == "};\n" else owner
                    field = re.match(r"    (?:int|float|Vector|time_t) (\w+)(?:\{.*?\}| = [^;]+)?;",
                                     line)
                    name = field and owner and ("" if owner == "Mouse" else "GL::") + f"{owner}::{field[1]}"
                    self.assertTrue(not name or name in written, f"{name} is not in the guide")

    def test_code_that_is_said_to_come_from_a_file(self):
        for instruction, code in guide.BLOCK.findall(guide.text()):
            if instruction.startswith("from: "):
                with open(os.path.join(guide.SOURCE, instruction[len("from: "):])) as file:
                    self.assertIn(code, file.read())

    def test_links_lead_somewhere(self):
        for name in ("host-guide.md", "architecture.md", "conventions.md"):
            text = re.sub(r"^ *```.*?^ *```$|`[^`]+`|<!--.*?-->", "", guide.text(name),
                          flags=re.DOTALL | re.MULTILINE)
            headings = {re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-")
                        for heading in re.findall(r"^#+ (.+)$", text, re.MULTILINE)}
            for link in re.findall(r"\]\(([^)]+)\)", text):
                if link.startswith("#"):
                    self.assertIn(link[1:], headings, name)
                elif "://" not in link:
                    folder = os.path.dirname(os.path.join(guide.SOURCE, "docs", name))
                    self.assertTrue(os.path.exists(os.path.join(folder, link)), f"{name}: {link}")


if __name__ == "__main__":
    unittest.main()
