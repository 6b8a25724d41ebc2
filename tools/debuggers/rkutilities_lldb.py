"""lldb's summaries and elements of the library's classes: "command script import" this file, best in ~/.lldbinit."""
import itertools

import lldb

import rkutilities_values as values

MOST_UNITS = 1000  # of a text in a summary, which is one line


class Value:
    """A value of lldb with the manners that the shared module asks for."""

    def __init__(self, value):
        self.value = value.GetNonSyntheticValue()

    def __getitem__(self, key):
        if isinstance(key, str):
            return Value(self.value.GetChildMemberWithName(key))
        if not self.value.GetType().IsPointerType():
            return Value(self.value.GetChildAtIndex(key))
        element = self.value.GetType().GetPointeeType()
        address = self.value.GetValueAsUnsigned() + key * element.GetByteSize()
        return Value(self.value.CreateValueFromAddress(f"[{key}]", address, element))

    def __int__(self):
        is_signed = self.value.GetType().GetTypeFlags() & lldb.eTypeIsSigned
        return self.value.GetValueAsSigned() if is_signed else self.value.GetValueAsUnsigned()

    def __float__(self):
        data, error = self.value.GetData(), lldb.SBError()
        return data.GetFloat(error, 0) if data.GetByteSize() == 4 else data.GetDouble(error, 0)

    def __bool__(self):
        return self.value.GetValueAsUnsigned() != 0

    def dereference(self):
        return Value(self.value.Dereference())


def pointee(value):
    """The object itself of an object, reference or pointer; None for a null pointer."""
    value = value.GetNonSyntheticValue()
    while value.GetType().IsPointerType() or value.GetType().IsReferenceType():
        if value.GetValueAsUnsigned() == 0:
            return None
        value = value.Dereference()
    return Value(value)


def class_name(value):
    return value.value.GetType().GetUnqualifiedType().GetCanonicalType().GetName()


def quoted(units):
    escapes = {"\n": "\\n", "\r": "\\r", "\t": "\\t", '"': '\\"', "\\": "\\\\"}
    return 'u"' + "".join(escapes.get(c, c if c.isprintable() else f"\\u{ord(c):04x}") for c in units) + '"'


def text_summary(text):
    place = values.text_place(text)
    if place is None:
        return values.BAD_TEXT
    units, length, is_inline = place
    shown = min(length, MOST_UNITS)
    characters = values.unit_bytes(units, shown, "little").decode("utf-16-le", "surrogatepass")
    return quoted(characters) + ("..." if shown < length else "")


SUMMARIES = {"CString": text_summary, "CrkLogSettings": values.log_settings_summary, **values.SUMMARIES}


def summary(value, _):
    value = pointee(value)
    return "" if value is None else SUMMARIES[class_name(value)](value)


def container_summary(value, _):
    value = pointee(value)
    return "" if value is None else values.container_summary(value)


class Elements:
    """The elements as children, found as far as they are asked for."""

    def __init__(self, value, _):
        self.value = value

    def update(self):
        container = pointee(self.value)
        self.count = 0 if container is None else int(container["m_count"])
        self.found, self.rest = [], self.walk(container)

    def has_children(self):
        return True

    def num_children(self, most=2**32 - 1):
        return min(self.count, most)

    def get_child_index(self, name):
        return int(name.strip("[]")) if name.startswith("[") else -1

    def get_child_at_index(self, index):
        self.found.extend(itertools.islice(self.rest, max(index + 1 - len(self.found), 0)))
        return self.found[index].value.Clone(f"[{index}]") if index < len(self.found) else None


class ArrayElements(Elements):
    def get_child_at_index(self, index):
        return pointee(self.value)["m_storage"]["m_elements"][index].value

    walk = staticmethod(lambda array: None)


class ListElements(Elements):
    walk = staticmethod(values.list_elements)


class MapElements(Elements):
    walk = staticmethod(values.map_entries)


def __lldb_init_module(debugger, _):
    category = debugger.CreateCategory("RkUtilities")

    def show(name, function, options=lldb.eTypeOptionNone):
        by_function = lldb.SBTypeSummary.CreateWithFunctionName(f"{__name__}.{function}", lldb.eTypeOptionCascade | options)
        category.AddTypeSummary(name, by_function)

    for name in SUMMARIES:
        has_members = name == "CrkLogSettings"
        show(lldb.SBTypeNameSpecifier(name), "summary", lldb.eTypeOptionNone if has_members else lldb.eTypeOptionHideChildren)
    for name, elements in {"CAtlArray": ArrayElements, "CAtlList": ListElements, "CAtlMap": MapElements}.items():
        template = lldb.SBTypeNameSpecifier(f"^{name}<.+>$", True)
        show(template, "container_summary")
        by_class = lldb.SBTypeSynthetic.CreateWithClassName(f"{__name__}.{elements.__name__}", lldb.eTypeOptionCascade)
        category.AddTypeSynthetic(template, by_class)
    category.SetEnabled(True)
