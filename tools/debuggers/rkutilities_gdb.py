"""gdb's printers of the library's classes.

gdb loads them with the shared library; beside the static one, "source" this file.
"""
import os
import sys

import gdb
import gdb.printing

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import rkutilities_values as values  # noqa: E402


class Text:
    def __init__(self, text):
        self.text = text

    def to_string(self):
        place = values.text_place(self.text)
        if place is None:
            return values.BAD_TEXT
        units, length, is_inline = place
        if is_inline and self.text.address is None:  # what a function returned
            data = values.unit_bytes(units, length, sys.byteorder)
            return gdb.Value(data, units[0].type.array(length - 1)) if length > 0 else ""
        return units.lazy_string(length=length)

    def display_hint(self):
        return "string" if values.text_place(self.text) else None


class Container:
    def __init__(self, container):
        self.container = container

    def to_string(self):
        return f"{self.container.type.strip_typedefs().name}, {values.container_summary(self.container)}"


class Array(Container):
    elements = staticmethod(values.array_elements)

    def children(self):
        return ((f"[{index}]", element) for index, element in enumerate(self.elements(self.container)))

    def display_hint(self):
        return "array"


class List(Array):
    elements = staticmethod(values.list_elements)


class Map(Container):
    def children(self):
        for index, entry in enumerate(values.map_entries(self.container)):
            yield f"[{2 * index}]", entry["m_key"]
            yield f"[{2 * index + 1}]", entry["m_value"]

    def display_hint(self):
        return "map"


class LogSettings:
    def __init__(self, settings):
        self.settings = settings

    def to_string(self):
        return values.log_settings_summary(self.settings)

    def children(self):
        for field in self.settings.type.strip_typedefs().fields():
            if not field.is_base_class:
                yield field.name, self.settings[field.name]


def summary(describe):
    class Summary:
        def __init__(self, value):
            self.value = value

        def to_string(self):
            return describe(self.value)

    return Summary


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("RkUtilities")
    plain = {"CString": Text, "CrkLogSettings": LogSettings}
    plain.update((name, summary(describe)) for name, describe in values.SUMMARIES.items())
    for name, printer in plain.items():
        collection.add_printer(name, f"^{name}$", printer)
    for name, printer in {"CAtlArray": Array, "CAtlList": List, "CAtlMap": Map}.items():
        collection.add_printer(name, f"^{name}<.*>$", printer)
    return collection


def register(objfile=None):
    gdb.printing.register_pretty_printer(objfile, printers(), replace=True)


if __name__ == "__main__":  # by "source", not from the file that gdb loads by itself
    register()
