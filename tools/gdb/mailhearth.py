"""Printers that show the library's classes in gdb.

    (gdb) source tools/gdb/mailhearth.py
    (gdb) print to
    $1 = "postmaster" [2 handles]

An installed shared library has them loaded by gdb itself. They read memory only and call
nothing in the program, so they serve for core files too. Nothing in the program is taken on
trust: what cannot be read or makes no sense is said to be so, in "<>", and what is long is
cut off at gdb's "print elements".

Strings are shown as SString::Debug writes them: what is not printable ASCII is a backslash
and a letter or the byte's decimal value. In front of a double quote there is a backslash too.
"""

import gdb
import gdb.printing

MAX_BYTES = 1 << 20  # of one string, where "print elements" is unlimited
MAX_ELEMENTS = 1 << 20  # of one list or table, likewise
PINNED = (1 << 31) - 1  # SStringRep::kPinned: what has been moved from has so many links

ESCAPES = {9: "t", 10: "n", 11: "v", 12: "f", 13: "r", 34: '"', 92: "\\"}


class Damaged(Exception):
    """What was found is no object of that class."""


FAILURES = (Damaged, gdb.error, RuntimeError, OverflowError)


def limit(most):
    """Returns how many elements gdb is told to print, at most so many."""
    if hasattr(gdb, "print_options"):
        elements = gdb.print_options()["max_elements"]
    else:
        elements = gdb.parameter("print elements")  # before gdb 13
    return min(int(elements), most) if elements else most


def escaped(data):
    def one(byte):
        letter = ESCAPES.get(byte)
        if letter is not None:
            return "\\" + letter
        return chr(byte) if 32 <= byte <= 126 else "\\%d" % byte

    return "".join(one(byte) for byte in data)


def quoted(address, length):
    """Returns the bytes at an address in quotes, as many of them as gdb is told to print."""
    shown = min(length, limit(MAX_BYTES))
    data = bytes(gdb.selected_inferior().read_memory(address, shown)) if shown else b""
    return '"' + escaped(data) + '"' + ("..." if shown < length else "")


def counted(number, what):
    return "%d %s%s" % (number, what, "" if number == 1 else "s")


def sharing(links):
    return " [%d handles]" % links if links > 1 else ""


def read_rep(rep):
    """Returns buffer, length, links and allocated of an SStringRep, which hang together."""
    buffer, length = int(rep["buffer"]), int(rep["length"])
    links, allocated = int(rep["links"]), int(rep["allocated"])
    if length < 0 or links < 0 or allocated < length or (buffer == 0 and allocated != 0):
        raise Damaged("length %d, %d links, %d allocated" % (length, links, allocated))
    return buffer, length, links, allocated


def rep_text(rep):
    """Returns what a representation holds, and who shares it if there is anything to share. Of a
    view, whose maker has links too, all links are told.
    """
    buffer, length, links, allocated = read_rep(rep)
    if buffer == 0:
        return "undefined [moved from]" if links == PINNED else "undefined"
    if allocated == length:
        return "%s [view, %s]" % (quoted(buffer, length), counted(links, "link"))
    return quoted(buffer, length) + sharing(links)


def pointed_at(pointer):
    if int(pointer) == 0:
        raise Damaged("null")
    return pointer.dereference()


def string_text(string):
    return rep_text(pointed_at(string["rep_"]))


def string_bytes(string):
    """Returns where the bytes of an SString are, and how many."""
    buffer, length, _, _ = read_rep(pointed_at(string["rep_"]))
    return buffer, length


def read(value):
    """Returns a value, read now: where that fails gdb is not in the middle of a line."""
    value.fetch_lazy()
    return value


def reason(error):
    return "<%s>" % (str(error) or type(error).__name__)


class Printer:
    """Shows a line of text, and elements if the derived class has any."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            return self.text()
        except FAILURES as error:
            return reason(error)


class Container(Printer):
    """Elements as pairs of a name and a value; what ends them too early comes as the last."""

    def children(self):
        try:
            self.text()
        except FAILURES:
            return  # what is shown for the text says it
        try:
            yield from self.elements()
        except FAILURES as error:
            yield from self.last(reason(error))

    def last(self, text):
        yield "damage", text


class RepPrinter(Printer):
    def text(self):
        return rep_text(self.value)


class StringPrinter(Printer):
    def text(self):
        return string_text(self.value)


class FixedStringPrinter(Printer):
    """SFixedString: its bytes, and the strings that share it; two links are its own."""

    def text(self):
        buffer, length, links, _ = read_rep(self.value)
        if links < 2:
            raise Damaged("%d links" % links)
        return "%s [view, %s]" % (quoted(buffer, length), counted(links - 2, "handle"))


class SubStringPrinter(Printer):
    """SSubString: what its bounds, cut to the string as it is now, leave of it."""

    def text(self):
        buffer, length = string_bytes(self.value["string_"])
        start, count = int(self.value["start_"]), int(self.value["count_"])
        if start < 0 or count < 0:
            raise Damaged("start %d, count %d" % (start, count))
        shown = max(0, min(count, length - start))
        return "%s [from %d of %d]" % (quoted(buffer + start, shown), start, length)


class ItemPrinter(Printer):
    """SStringItem: its string."""

    def text(self):
        return string_text(self.value["value"])


class ListPrinter(Container):
    def display_hint(self):
        return "array"

    def rep(self):
        rep = pointed_at(self.value["rep_"])
        count, links, flags = int(rep["count"]), int(rep["links"]), int(rep["flags"])
        if count < 0 or links < 1 or flags not in (0, 1):
            raise Damaged("count %d, %d links, flags %d" % (count, links, flags))
        return int(rep["root"]) and rep["root"], count, links, flags

    def text(self):
        _, count, links, flags = self.rep()
        state = "" if flags else "undefined "
        return state + "list of %d" % count + sharing(links)

    def elements(self):
        item, count, _, _ = self.rep()
        if (count == 0) != (item == 0):
            raise Damaged("root and count do not fit")
        root = item
        for i in range(min(count, limit(MAX_ELEMENTS) + 1)):
            if i > 0 and item == root:
                raise Damaged("a ring of %d" % i)
            yield "[%d]" % i, read(item["value"])
            following = item["next"]
            if following["prev"] != item:
                raise Damaged("the ring is broken")
            item = following


def table_entries(table):
    """Yields pointers to the entries of an STable, in their order."""
    count = int(table["count_"])
    sentinel = table["sentinel_"].address
    item = table["sentinel_"]["listNext"]
    for i in range(min(count, limit(MAX_ELEMENTS) + 1)):
        if item == sentinel:
            raise Damaged("only %d linked" % i)
        if item["listPrev"]["listNext"] != item:
            raise Damaged("the order of keys is broken")
        yield item
        item = item["listNext"]


def table_text(table):
    count, size = int(table["count_"]), int(table["size_"])
    if count < 0 or size < 1:
        raise Damaged("%d entries in %d buckets" % (count, size))
    cases = "" if int(table["caseSensitive_"]) else ", whatever their case"
    return count, size, cases


class TableItemPrinter(Printer):
    """STableItem, also as a part of what is derived from it: its key."""

    def text(self):
        return string_text(self.value["key"])


class TablePrinter(Container):
    def display_hint(self):
        return "array"

    def text(self):
        return "table of %d in %d buckets%s" % table_text(self.value)

    def elements(self):
        for i, item in enumerate(table_entries(self.value)):
            yield "[%d]" % i, read(item.cast(item.dynamic_type).dereference())


class NamedPrinter(Container):
    """A container of values by names, which are in `field` of entries of the class `item`."""

    def display_hint(self):
        return "map"

    def last(self, text):
        yield "damage", "damage"
        yield "damage value", text

    def text(self):
        count, _, cases = table_text(self.value["table_"])
        return "%s%s" % (counted(count, "name"), cases)

    def elements(self):
        item_type = gdb.lookup_type("mailhearth::" + self.item).pointer()
        for i, item in enumerate(table_entries(self.value["table_"])):
            value = read(item.cast(item_type)[self.field])  # first: names and values are pairs
            yield "name %d" % i, read(item["key"])
            yield "value %d" % i, value


class NamedStringListPrinter(NamedPrinter):
    item, field = "SNamedStringListItem", "list"

    def text(self):
        return super().text() + (", \\r\\n" if int(self.value["crlf_"]) else "")


class NamedValuePrinter(NamedPrinter):
    item, field = "SNamedValueItem", "value"


class IndexStringPrinter(Container):
    def slots(self):
        """Returns the first slot and their number."""
        vector = self.value["slots_"]["_M_impl"]
        first = vector["_M_start"]
        count = int(vector["_M_finish"] - first)
        room = int(vector["_M_end_of_storage"] - first)
        if not 0 <= count <= room or (int(first) == 0 and room > 0):
            raise Damaged("%d of %d slots" % (count, room))
        return first, count

    def text(self):
        return counted(self.slots()[1], "string")

    def elements(self):
        first, count = self.slots()
        for i in range(min(count, limit(MAX_ELEMENTS) + 1)):
            yield "[%d]" % int(first[i]["index"]), read(first[i]["value"])


# --- Addresses ----------------------------------------------------------------------

TOKEN_TYPES = (
    "TokError TokEnd TokAtom TokQuoted TokComment TokLiteral TokBad TokLess TokGreater TokAt "
    "TokDot TokComma TokSemicolon TokColon TokCrlf TokPercent"
).split()


class TokenPrinter(Printer):
    """SToken: its type and its text, a range of a source or all of it."""

    def text(self):
        kind = int(self.value["type_"])
        names = [name for bit, name in enumerate(TOKEN_TYPES) if kind == 1 << bit]
        buffer, length = string_bytes(self.value["source_"])
        start, count = int(self.value["start_"]), int(self.value["length_"])
        if count == -1:
            start, count = 0, length
        if not 0 <= start <= start + count <= length:
            raise Damaged("from %d, %d bytes of %d" % (start, count, length))
        return "%s %s" % (names[0] if names else kind, quoted(buffer + start, count))


class S821AddressPrinter(Container):
    fields = (("route", "route_"), ("local part", "localPart_"), ("domain", "domain_"))

    def text(self):
        local = string_bytes(self.value["localPart_"])[1]
        domain = string_bytes(self.value["domain_"])[1]
        route = int(pointed_at(self.value["route_"]["rep_"])["count"])
        incomplete = (domain or route) and not local or route and not domain
        if int(self.value["bad_"]) or incomplete:
            return "bad address"
        return "valid address" if local else "null address"

    def elements(self):
        for name, field in self.fields:
            yield name, read(self.value[field])


class S822AddressPrinter(S821AddressPrinter):
    fields = S821AddressPrinter.fields + (("phrase", "phrase_"), ("comment", "comment_"))

    def text(self):
        return "end of a list" if int(self.value["end_"]) else super().text()


# --- Records ------------------------------------------------------------------------


class FieldPrinter(NamedStringListPrinter):
    """SField and what is derived from it: its file beside its names."""

    def text(self):
        state = "loaded" if int(self.value["loaded_"]) else "not loaded"
        error = int(self.value["error_"])
        if error:
            state += ", error %d" % error
        return "%s, file %s, %s" % (super().text(), string_text(self.value["filename_"]), state)


PRINTERS = {
    "SStringRep": RepPrinter,
    "SString": StringPrinter,
    "SFixedString": FixedStringPrinter,
    "SSubString": SubStringPrinter,
    "SStringItem": ItemPrinter,
    "SStringList": ListPrinter,
    "STableItem": TableItemPrinter,
    "STable": TablePrinter,
    "SNamedStringList": NamedStringListPrinter,
    "SNamedValue": NamedValuePrinter,
    "SIndexString": IndexStringPrinter,
    "SToken": TokenPrinter,
    "S821Address": S821AddressPrinter,
    "S822Address": S822AddressPrinter,
    "SField": FieldPrinter,
    "SControl": FieldPrinter,
    "SRequest": FieldPrinter,
}


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("mailhearth")
    for name, printer in PRINTERS.items():
        collection.add_printer(name, "^mailhearth::%s$" % name, printer)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
