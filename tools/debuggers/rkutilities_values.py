"""What the library's values say, for the debuggers' front ends beside this file.

A front end hands over values that know their members (value["m_x"]), their elements (value[3]) and their number (int(value),
float(value)); a pointer is true when it points somewhere, and value.dereference() is what it points to.
"""
import datetime
import math
import struct
import time
import uuid

INLINE_UNITS = 11
KIND_INLINE, KIND_STATIC, KIND_SHARED = range(3)
BAD_TEXT = "<not constructed, or destroyed>"


def text_place(text):
    """Where the units of a CString are and how many: (units, length, whether they lie in the object); None for garbage."""
    storage = text["m_text"]
    kind, length = int(storage["m_kind"]), int(storage["m_length"])
    if kind == KIND_INLINE and 0 <= length <= INLINE_UNITS:
        return storage["m_place"]["units"], length, True
    if kind in (KIND_STATIC, KIND_SHARED) and length >= 0:
        return storage["m_place"]["pointer"], length, False
    return None


def unit_bytes(units, count, byte_order):
    return b"".join(int(units[i]).to_bytes(2, byte_order) for i in range(count))


def array_elements(array):
    elements = array["m_storage"]["m_elements"]
    for index in range(int(array["m_count"])):
        yield elements[index]


def list_elements(values):
    node = values["m_head"]
    for _ in range(int(values["m_count"])):
        if not node:
            return
        yield node.dereference()["element"]
        node = node.dereference()["next"]


def map_entries(entries):
    """The pairs in the order of a walk."""
    buckets = entries["m_buckets"]
    first, left = buckets["first"], int(entries["m_count"])
    for bucket in range(int(buckets["count"])):
        node = first[bucket]
        while node and left > 0:
            yield node.dereference()["entry"]
            node, left = node.dereference()["next"], left - 1


def container_summary(values):
    count = int(values["m_count"])
    return "1 element" if count == 1 else f"{count} elements"


def _fraction(microseconds):
    return f".{microseconds:06}".rstrip("0") if microseconds else ""


def time_summary(point):
    """The local time of the debugger, which as a rule is that of the program."""
    seconds = float(point["m_seconds"]) + 978307200  # since 1970
    if seconds == 0:
        return "null time"
    if not -62135683200 <= seconds <= 253402387199:
        return f"<not a time: {seconds - 978307200}>"
    whole, microseconds = divmod(round(seconds * 1000000), 1000000)
    t = time.localtime(whole)
    return (f"{t.tm_year:04}-{t.tm_mon:02}-{t.tm_mday:02} {t.tm_hour:02}:{t.tm_min:02}:{t.tm_sec:02}"
            + _fraction(microseconds) + time.strftime(" %z", t))


def date_value_summary(date):
    """The fields, which belong to no time zone, to the nearest second as the class reads them."""
    try:
        seconds = float(date["m_dt"]) * 86400
        seconds = math.copysign(math.floor(abs(seconds) + 0.5), seconds)
        return str(datetime.datetime(1899, 12, 30) + datetime.timedelta(seconds=seconds))
    except (ValueError, OverflowError):
        return f"<reads as 1899-12-30: {float(date['m_dt'])}>"


def _duration(seconds):
    if not math.isfinite(seconds):
        return f"<not a duration: {seconds}>"
    whole, microseconds = divmod(round(abs(seconds) * 1000000), 1000000)
    days, rest = divmod(whole, 86400)
    sign = "-" if seconds < 0 else ""
    return f"{sign}{days} d {rest // 3600:02}:{rest // 60 % 60:02}:{rest % 60:02}" + _fraction(microseconds)


def guid_summary(guid):
    """As CrkGuid::GuidToString writes it."""
    record = guid["m_bytes"]
    return str(uuid.UUID(bytes_le=bytes(int(record[f"byte{i}"]) for i in range(16)))).upper()


def _single(value):
    """The shortest decimal that reads as this float."""
    number = float(value)
    for digits in range(6, 10):
        text = f"{number:.{digits}g}"
        if not math.isfinite(number) or struct.pack("f", float(text)) == struct.pack("f", number):
            break
    return text


def _pair(value, first, second):
    return f"({_single(value[first])}, {_single(value[second])})"


def _size(value):
    return f"{_single(value['width'])} x {_single(value['height'])}"


def rect_summary(rect):
    if math.inf in (float(rect["x"]), float(rect["y"])):
        return "null rectangle"
    return f"{_pair(rect, 'x', 'y')} {_size(rect)}"


def margin_summary(margin):
    return ", ".join(f"{side} {_single(margin[side])}" for side in ("left", "top", "right", "bottom"))


def transform_summary(transform):
    numbers = tuple(float(transform[name]) for name in ("a", "b", "c", "d", "tx", "ty"))
    return "identity" if numbers == (1, 0, 0, 1, 0, 0) else "[" + ", ".join(f"{n:.15g}" for n in numbers) + "]"


LEVELS = ("LogEmergency", "LogCritical", "LogError", "LogWarning", "LogNotice", "LogInfo", "LogDebug")


def log_settings_summary(settings):
    if not int(settings["m_enable"]):
        return "off"
    level = int(settings["m_level"])
    name = LEVELS[level] if 0 <= level < len(LEVELS) else str(level)
    return f"on, {name} and worse, " + ("all categories" if int(settings["m_includeAll"]) else "listed categories")


# Classes whose summary is one line of text.
SUMMARIES = {
    "CTime": time_summary,
    "CTimeSpan": lambda span: _duration(float(span["m_seconds"])),
    "COleDateTime": date_value_summary,
    "COleDateTimeSpan": lambda span: _duration(float(span["m_span"]) * 86400),
    "CrkGuid": guid_summary,
    "CrkFloatPoint": lambda point: _pair(point, "x", "y"),
    "CrkFloatVector2D": lambda vector: _pair(vector, "x", "y"),
    "CrkFloatSize": _size,
    "CrkFloatRect": rect_summary,
    "CrkFloatMargin": margin_summary,
    "CGAffineTransform": transform_summary,
}
