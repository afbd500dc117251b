# SPDX-License-Identifier: MIT
"""The guide's reference against the classes as they are: nothing missing, renamed or made up."""
import os
import re
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
KINDS = {QMetaMethod.Signal: "Signal", QMetaMethod.Slot: "Slot"}
LINES = re.DOTALL | re.MULTILINE


def made(name):
    return made("GLMultiWidget").AddTile(7) if name == "Tile" else module.make(name, module, "")


def signature(text):
    """`QObject* f(int a, QObject* b)` as (`QObject*`, `f(int,QObject*)`); a signal returns void."""
    result, name, arguments = re.fullmatch(r"(?:(\S+) )?(\w+)\((.*)\)", text).groups()
    types = ",".join(re.findall(r" *(.+?[*>]?)(?: \w+)?(?:,|$)", arguments))
    return result or "void", bytes(QMetaObject.normalizedSignature(f"{name}({types})")).decode()


def methods(meta, kind):
    own = (meta.method(i) for i in range(meta.methodOffset(), meta.methodCount()))
    return {(m.typeName(), bytes(m.methodSignature()).decode()) for m in own
            if KINDS.get(m.methodType()) == kind}


FORMATS = {bool: lambda b: str(b).lower(), str: '"{}"'.format, list: str, int: str, float: "{:g}".format,
           QSize: lambda s: f"{s.width()} x {s.height()}", QPointF: lambda p: f"{p.x():g}, {p.y():g}",
           QSizeF: lambda s: f"{s.width():g} x {s.height():g}",
           QRectF: lambda r: "{:g}, {:g}, {:g} x {:g}".format(*r.getRect()),
           QKeySequence: lambda k: f'"{k.toString()}"'}
TYPES = {"str": "QString", "list": "QVariantList"}


def shown(value):
    """The type and the value of a default, as the guide writes them."""
    name = type(value).__name__
    return TYPES.get(name, name), FORMATS[type(value)](value)


class Reference(unittest.TestCase):
    maxDiff = None

    def compare(self, section, facts, *columns):
        with self.subTest(f"{section}, {columns[0]}"):
            written = [tuple(row[c] for c in columns) for row in guide.tables(section, columns[0])]
            self.assertEqual(sorted(written), sorted(facts))

    def test_signals_slots_and_properties(self):
        for section in ("GLWindow", "GLWidget", "GLMultiWidget", "KeyAction", "MouseAction"):
            thing = made(section)
            meta = thing.metaObject()
            for kind in KINDS.values():
                with self.subTest(f"{section}, {kind}"):
                    written = [signature(row[kind]) for row in guide.tables(section, kind)]
                    self.assertEqual(sorted(written), sorted(methods(meta, kind)))
            own = [meta.property(i) for i in range(meta.propertyOffset(), meta.propertyCount())]
            facts = [(p.name(), p.typeName(), shown(p.read(thing))[1],
                      "host" if p.isWritable() else "module") for p in own]
            self.compare(section, facts, "Property", "Type", "Default", "Set by")

    def test_dynamic_properties(self):
        base = made("GLWidget").dynamicPropertyNames()
        for section in ("GLWindow", "GLWidget", "GLMultiWidget", "Tile"):
            thing = made(section)
            # What a multi-view shares with its base stands there, but for one that differs.
            own = [(name, *shown(thing.property(name)))
                   for name in (bytes(n).decode() for n in thing.dynamicPropertyNames())
                   if section != "GLMultiWidget" or name not in base or name == "enabled"]
            self.compare(section, own, "Dynamic property", "Type", "Default")

    def test_no_field_of_a_number_or_vector_is_left_out(self):
        fields = set()
        for header in ("camera.h", "mouse.h"):
            text = guide.text("../GL/" + header)
            for owner, body in re.findall(r"^struct (?:\w+EXPORT )?(\w+) \{$(.*?)^\};", text, LINES):
                names = re.findall(r"^    (?:int|float|Vector|time_t) (\w+)(?:\{.*?\}| = [^;]+)?;",
                                   body, re.MULTILINE)
                fields |= {("" if owner == "Mouse" else "GL::") + f"{owner}::{name}" for name in names}
        self.assertEqual(sorted(row["Field"] for row in guide.tables("Records", "Field")), sorted(fields))

    def test_code_that_is_said_to_come_from_a_file(self):
        for instruction, code in guide.BLOCK.findall(guide.text()):
            if instruction.startswith("from: "):
                self.assertIn(code, guide.text("../" + instruction[len("from: "):]))

    def test_links_lead_somewhere(self):
        for name in ("host-guide.md", "architecture.md", "conventions.md"):
            text = re.sub(r"^ *```.*?^ *```$|`[^`]+`|<!--.*?-->", "", guide.text(name), flags=LINES)
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
