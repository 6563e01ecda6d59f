#!/usr/bin/env python3
"""Compares lossless workbooks with what Jackcess reads from their Access files.

    check_workbook_truth.py MANIFEST.json

MANIFEST: [{"workbook": PATH, "truth": PATH, "limit": UNITS, "digits": N,
            "tables": [{"name": TABLE, "sheets": [SHEET, ...]}]}]
Truth files in either form: the corpus truth (access-truth/1, rows as lists of canonical cells)
or the fixture sidecars (rows as objects by column name). "limit" is the longest text of a
cell in UTF-16 units, "digits" the significant digits a numeric cell keeps (17: all).

From each truth value the script works out, by its own rules, the cell a lossless workbook
shows for it and whether that cell is an approximation (and of which kind); the rows of each
sheet (read with openpyxl for .xlsx, xlrd for .xls) must then be the truth's rows, in any
order. Prints JSON: {"cells": N, "unread": N (cells of complex columns of unknown kind, whose
values the reader does not read: not compared), "rows": N, "differences": [TEXT, ...],
"approximations": {"FILE|TABLE|KIND": COUNT}, "truncated": ["FILE|TABLE", ...]}.
"""
import base64
import binascii
import datetime
import decimal
import hashlib
import json
import math
import struct
import sys

sys.path.insert(0, __file__.rsplit("/", 1)[0])
import read_workbook  # noqa: E402

TEXTS_CUT = "texts cut at the cell limit"
BEFORE_1900 = "dates before 1900 written as ISO text"
TIMES_ROUNDED = "times rounded to milliseconds"
DECIMALS_AS_TEXT = "numbers with more digits than a cell keeps written as text"
NOT_FINITE = "NaN and infinite numbers written as text"
BYTES_TOO_LONG = "binary values too long for a cell replaced by a note"


def rounded_digits(digits):
    return "numbers rounded to %d significant digits" % digits


def utf16_units(text):
    return len(text.encode("utf-16-le")) // 2


def cut_to_units(text, limit):
    units = 0
    for i, ch in enumerate(text):
        units += 2 if ord(ch) > 0xFFFF else 1
        if units > limit:
            return text[:i]
    return text


def significant(text):
    """Significant digits of a decimal text (no exponent)."""
    digits = text.lstrip("-+").replace(".", "").lstrip("0")
    if "." in text:
        digits = digits.rstrip("0")
    return len(digits.rstrip("0")) if digits else 0


def shortest_digits(value):
    mantissa = repr(value).split("e")[0]
    return significant(mantissa)


def canonical_decimal(text):
    d = decimal.Decimal(text)
    if d == 0:
        return "0"
    s = format(d, "f")
    if "." in s:
        s = s.rstrip("0").rstrip(".")
    return s


def number_key(value):
    return "n:" + repr(float(value) + 0.0)


LONG_TEXT = 4096
# Complex columns of a kind Access documents nowhere (Jackcess: UNSUPPORTED): the reader does not
# read their values, so the workbook holds the cell's stored id; they are left out of the comparison.
UNREAD = "COMPLEX_UNREAD"


def text_key(text):
    """Rows are matched by the start of a long text; the whole text is checked afterwards."""
    return "t:long:" + text[:40] if len(text) > LONG_TEXT else "t:" + text


class Expect:
    """The workbook cell a truth value becomes: a key to match rows by, its approximation, and
    for values that the key does not hold whole, a check of the matched cell that answers
    (matches, approximation)."""

    def __init__(self, key, approximation=None, check=None):
        self.key = key
        self.approximation = approximation
        self.check = check


def expect_text(text, limit):
    if utf16_units(text) > limit:
        cut = cut_to_units(text, limit)
        return Expect(text_key(cut), TEXTS_CUT, lambda cell: (cell is not None and cell[1] == cut, TEXTS_CUT))
    if len(text) > LONG_TEXT:
        return Expect(text_key(text), None, lambda cell: (cell is not None and cell[1] == text, None))
    return Expect("t:" + text)


def expect_long_fixture_text(value, limit):
    """A fixture's long text, known by its length, start and SHA-256."""
    head = value["head"]
    if value["chars"] > limit:
        def check(cell):
            ok = cell is not None and cell[1].startswith(head) and limit - 1 <= utf16_units(cell[1]) <= limit
            return ok, TEXTS_CUT
        return Expect(text_key(head + "x" * LONG_TEXT), TEXTS_CUT, check)

    def whole(cell):
        return cell is not None and hashlib.sha256(cell[1].encode("utf-8")).hexdigest() == value["sha256_utf8"], None
    return Expect(text_key(head + "x" * LONG_TEXT), None, whole)


def date_parts(text):
    """(date, time text without fraction, fraction digits) of "YYYY-MM-DD HH:MM:SS[.f]"."""
    day = datetime.date(int(text[0:4]), int(text[5:7]), int(text[8:10]))
    return day, text[11:19], text[20:] if len(text) > 19 else ""


def excel_has_date(day):
    return day >= datetime.date(1900, 1, 1) or day == datetime.date(1899, 12, 30)


def expect_date(text, extended):
    day, clock, fraction = date_parts(text)
    iso = text[:10] + "T" + clock
    if not excel_has_date(day):
        return Expect("t:" + iso + ("." + fraction if fraction else ""), BEFORE_1900)
    ticks = int((fraction + "0000000")[:7]) if fraction else 0
    milliseconds = (ticks + 5000) // 10000
    clock_time = datetime.time.fromisoformat(clock)
    day_ms = ((clock_time.hour * 60 + clock_time.minute) * 60 + clock_time.second) * 1000 + milliseconds
    if day == datetime.date(9999, 12, 31):
        day_ms = min(day_ms, 86399999)  # no date cell after 9999-12-31
    moment = datetime.datetime.combine(day, datetime.time()) + datetime.timedelta(milliseconds=day_ms)
    shown = moment.strftime("%Y-%m-%dT%H:%M:%S")
    if moment.microsecond:
        shown += ".%03d" % (moment.microsecond // 1000)
    return Expect("d:" + shown, TIMES_ROUNDED if extended and ticks % 10000 else None)


def expect_bytes(data, limit):
    if not data:
        return Expect("none")
    if (len(data) + 2) // 3 * 4 > limit:
        return Expect("t:[%d bytes, too long for a cell]" % len(data), BYTES_TOO_LONG)
    return Expect("t:" + base64.b64encode(data).decode("ascii"))


def expect_cell(kind, value, column, limit, digits):
    """The expected cell of a truth value in the corpus truth's canonical form."""
    if kind == "BOOLEAN":
        return Expect("b:" + ("true" if value else "false"))
    if kind == UNREAD:
        return Expect("unread")
    if kind == "OLE":
        return Expect("ole", None, lambda cell: ole_matches(cell, value, limit))
    if isinstance(value, dict) and "sha256_utf8" in value:
        return expect_long_fixture_text(value, limit)
    if kind == "COMPLEX_TYPE":
        return expect_complex(value, column, limit)
    if value is None or value == "":
        return Expect("none")
    if kind in ("BYTE", "INT", "LONG"):
        return Expect(number_key(int(value)))
    if kind in ("BIG_INT", "MONEY", "NUMERIC"):
        as_double = float(value)
        exact = decimal.Decimal(repr(as_double)) == decimal.Decimal(value)
        if exact and shortest_digits(as_double) <= digits:
            return Expect(number_key(as_double))
        return Expect("t:" + canonical_decimal(value), DECIMALS_AS_TEXT)
    if kind in ("FLOAT", "DOUBLE"):
        if value in ("NaN", "Infinity", "-Infinity"):
            return Expect("t:" + value, NOT_FINITE)
        number = float(value)
        if shortest_digits(number) > digits:
            rounded = float("%.*G" % (digits, number))
            if math.isinf(rounded):
                # Rounded up past the largest double: the largest value of those digits instead.
                rounded = math.copysign(float("%.*G" % (digits, 1.797693134862315e308)), number)
            return Expect(number_key(rounded), rounded_digits(digits))
        return Expect(number_key(number))
    if kind == "SHORT_DATE_TIME":
        return expect_date(value, False)
    if kind == "EXT_DATE_TIME":
        return expect_date(value, True)
    if kind == "GUID":
        return Expect("t:" + value.lower())
    if kind == "BINARY" or kind.startswith("UNSUPPORTED"):
        return expect_bytes(binascii.unhexlify(value), limit)
    return expect_text(value, limit)


def month_first(iso):
    return iso[5:7] + "/" + iso[8:10] + "/" + iso[0:4] + iso[10:]


def expect_complex(values, column, limit):
    if not values:
        return Expect("none")
    kind = column.get("complexType")
    if kind == "ATTACHMENT":
        text = "; ".join(v["fileName"] for v in values)
    elif kind == "VERSION_HISTORY":
        text = values[0]["value"]
    else:
        # The values as the reader shows them: booleans 1/0, dates month first.
        shown = []
        for v in values:
            if isinstance(v, bool):
                shown.append("1" if v else "0")
            elif column.get("multiValueType") in ("SHORT_DATE_TIME", "EXT_DATE_TIME"):
                shown.append(month_first(v))
            else:
                shown.append(str(v))
        text = "; ".join(shown)
    if not text:
        return Expect("none")
    return expect_text(text, limit)


def actual_key(cell, kind):
    """The key of a workbook cell in the terms of `expect_cell`."""
    if kind == UNREAD:
        return "unread"
    if kind == "OLE":
        return "ole"
    if cell is None or cell[0] == "blank":
        return "none"
    ctype, value = cell[0], cell[1]
    if ctype == "boolean":
        return "b:" + ("true" if value else "false")
    if ctype == "number":
        return number_key(value)
    if ctype == "date":
        return "d:" + value
    if ctype == "text":
        if kind == "GUID":
            return "t:" + value.lower()
        if kind in ("BIG_INT", "MONEY", "NUMERIC"):
            try:
                return "t:" + canonical_decimal(value)
            except decimal.InvalidOperation:
                return "t:" + value
        return text_key(value)
    return ctype + ":" + str(value)


def ole_matches(cell, truth, limit):
    """(matches, approximation) of an OLE cell against its truth."""
    if truth is None or truth.get("kind") == "LINK":
        return (cell is None or cell[0] == "blank"), None
    if cell is None or cell[0] == "blank":
        return truth.get("kind") == "UNKNOWN" or truth.get("rawSize") == 0, None
    if cell[0] != "text":
        return False, None
    sizes = {truth.get("size"), truth.get("rawSize")}
    sums = {truth.get("sha256"), truth.get("rawSha256")}
    for stream in (truth.get("streams") or {}).values():
        sizes.add(stream.get("size"))
        sums.add(stream.get("sha256"))
    text = cell[1]
    if text.startswith("[") and text.endswith(" bytes, too long for a cell]"):
        size = int(text[1:].split(" ")[0])
        return size in sizes and (size + 2) // 3 * 4 > limit, BYTES_TOO_LONG
    try:
        data = base64.b64decode(text, validate=True)
    except (binascii.Error, ValueError):
        return False, None
    return hashlib.sha256(data).hexdigest() in sums, None


# ---- the fixture sidecars, turned into the corpus truth's canonical cells ----

FIXTURE_TYPES = {"MONEY", "NUMERIC", "FLOAT", "DOUBLE", "BIG_INT"}


def fixture_cell(kind, value, payloads):
    """A fixture sidecar value in the corpus truth's canonical form, or a dict kept as it is.
    `payloads`: the decoded content of OLE fields by the SHA-256 of the whole field."""
    if value is None:
        return None
    if isinstance(value, dict):
        if "iso" in value:
            iso = value["iso"].replace("T", " ")
            if kind == "EXT_DATE_TIME":
                fraction = iso[20:] if len(iso) > 19 else ""
                iso = iso[:19] + "." + (fraction + "0000000")[:7]
            return iso
        if kind == "OLE":
            ole = {"rawSize": value["len"], "rawSha256": value["sha256"], "size": None, "sha256": None}
            if value["sha256"] in payloads:
                ole["size"], ole["sha256"], extra, ole["kind"] = payloads[value["sha256"]]
                ole["streams"] = {"content": {"size": None, "sha256": extra}}
            return ole
        if "hex" in value:
            return value["hex"]
        return value
    if kind in ("BYTE", "INT", "LONG", "BIG_INT") and not isinstance(value, bool):
        return str(value)
    if kind in FIXTURE_TYPES:
        return str(value)
    return value


def truth_tables(truth):
    if truth.get("format") == "access-truth/1":
        for table in truth["tables"]:
            yield table["name"], table["columns"], table["rows"], table.get("rowsTruncated", False)
        return
    payloads = {}
    for ole in truth.get("ole_rows", []):
        parse = ole.get("jackcess_parse") or {}
        payloads[ole["field_sha256"]] = (ole["payload_length"], ole["payload_sha256"], parse.get("content_sha256"),
                                         parse.get("content_type"))
    for table in truth["tables"]:
        columns = table["columns"]
        rows = table.get("rows")
        if rows is None:
            continue  # too many rows to list
        converted = []
        for row in rows:
            converted.append([fixture_cell(c["type"], row.get(c["name"]), payloads) for c in columns])
        yield table["name"], columns, converted, False


def main(argv):
    manifest = json.load(open(argv[1]))
    cells = rows_done = unread = 0
    differences = []
    approximations = {}
    truncated = []
    log = sys.stderr
    for entry in manifest:
        truth = json.load(open(entry["truth"]))
        limit, digits = entry["limit"], entry["digits"]
        sheets = {s["name"]: s for s in read_workbook.read_any(entry["workbook"], log)}
        by_table = {t["name"]: t["sheets"] for t in entry["tables"]}
        file_name = entry["workbook"].rsplit("/", 1)[-1]

        def differ(text):
            if len(differences) < 60:
                differences.append(file_name + ": " + text)

        for name, columns, truth_rows, is_truncated in truth_tables(truth):
            if name not in by_table:
                differ("table %s was not exported" % name)
                continue
            if is_truncated:
                truncated.append(file_name + "|" + name)
            # The sheet's rows: a header row, then the values, over continuation sheets.
            grid = []
            header = None
            for sheet_name in by_table[name]:
                sheet = sheets.get(sheet_name)
                if sheet is None:
                    differ("sheet %s is missing" % sheet_name)
                    continue
                rows = {}
                for r, c, ctype, value, *rest in sheet["cells"]:
                    rows.setdefault(r, {})[c] = (ctype, value)
                count = max(rows) + 1 if rows else 0
                start = 0
                if header is None:
                    header = [rows.get(0, {}).get(c, ("", ""))[1] for c in range(len(columns))]
                    start = 1
                grid += [rows.get(r, {}) for r in range(start, count)]
            header = header or []
            position = {}
            for k, column in enumerate(columns):
                if column["name"] not in header:
                    differ("%s: no column %s" % (name, column["name"]))
                    break
                position[k] = header.index(column["name"])
            if len(position) != len(columns):
                continue
            if not is_truncated and len(grid) != len(truth_rows):
                differ("%s: %d rows, truth %d" % (name, len(grid), len(truth_rows)))
                continue
            kinds = [UNREAD if c.get("complexType") == "UNSUPPORTED" else c["type"] for c in columns]
            unread += sum(len(truth_rows) for k in kinds if k == UNREAD)
            ours = {}
            for r, row in enumerate(grid):
                key = "\x1f".join(actual_key(row.get(position[k]), kinds[k]) for k in range(len(columns)))
                ours.setdefault(key, []).append(r)
            for t, truth_row in enumerate(truth_rows):
                expects = [expect_cell(kinds[k], truth_row[k], columns[k], limit, digits) for k in range(len(columns))]
                key = "\x1f".join(e.key for e in expects)
                cells += len(columns)
                rows_done += 1
                if not ours.get(key):
                    # Name the first cell that differs from the sheet's row at the same place.
                    detail = ""
                    if t < len(grid):
                        for k in range(len(columns)):
                            got = actual_key(grid[t].get(position[k]), kinds[k])
                            if got != expects[k].key:
                                detail = "%s (%s): sheet %s | expected %s" % (
                                    columns[k]["name"], kinds[k], got[:120], expects[k].key[:120])
                                break
                    differ("%s: truth row %d not found; %s" % (name, t, detail))
                    continue
                r = ours[key].pop()
                for k, expect in enumerate(expects):
                    approximation = expect.approximation
                    if expect.check:
                        ok, approximation = expect.check(grid[r].get(position[k]))
                        if not ok:
                            differ("%s row %d %s: %s | truth %s" % (
                                name, t, columns[k]["name"], str(grid[r].get(position[k]))[:80],
                                json.dumps(truth_row[k])[:160]))
                    if approximation:
                        tag = "%s|%s|%s" % (file_name, name, approximation)
                        approximations[tag] = approximations.get(tag, 0) + 1
    json.dump({"cells": cells - unread, "unread": unread, "rows": rows_done, "differences": differences, "approximations": approximations,
               "truncated": truncated}, sys.stdout)
    sys.stdout.write("\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
