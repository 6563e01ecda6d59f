#!/usr/bin/env python3
"""Reads a workbook with an independent reader and prints what it sees as JSON.

    read_workbook.py FILE.xls      (python3-xlrd)
    read_workbook.py FILE.xlsx     (python3-openpyxl)
    read_workbook.py --streams FILE   the streams of a compound file (xlrd's reader)

Workbook output: {"warnings": [...], "sheets": [{"name": N, "cells": [[row, col, type, value]]}]}
with type "text", "number", "boolean" (true/false), "date" (ISO text as the reader gives the
date, "YYYY-MM-DDTHH:MM:SS" with ".fff" when it has milliseconds) or "blank"; cells that hold
nothing are left out. A number or date cell with a number format other than General has that
format as a fifth element. Compound file
output: {"warnings": [...], "streams": {"NAME": {"size": N, "sha256": HEX}}} for every stream of
the root storage.
"""
import datetime
import hashlib
import io
import json
import math
import sys


def plain(value):
    """JSON has no infinity or NaN: those come out as text, which no expected number matches."""
    if isinstance(value, float) and not math.isfinite(value):
        return repr(value)
    return value


def iso(moment):
    """A datetime as ISO text; a time alone (Excel's serials below 1 hold only a time of day) on
    1899-12-30, the day Access gives a time without a date."""
    if isinstance(moment, datetime.time):
        moment = datetime.datetime.combine(datetime.date(1899, 12, 30), moment)
    text = moment.strftime("%Y-%m-%dT%H:%M:%S")
    if moment.microsecond:
        text += ".%03d" % round(moment.microsecond / 1000)
    return text


def xls_date(serial, datemode):
    import xlrd
    if serial < 1:
        return iso(datetime.datetime(1899, 12, 30) + datetime.timedelta(milliseconds=round(serial * 86400000)))
    return iso(xlrd.xldate.xldate_as_datetime(serial, datemode))


def read_xls(path, log):
    import xlrd
    book = xlrd.open_workbook(path, formatting_info=True, logfile=log, ragged_rows=True)
    kinds = {xlrd.XL_CELL_TEXT: "text", xlrd.XL_CELL_NUMBER: "number", xlrd.XL_CELL_BLANK: "blank",
             xlrd.XL_CELL_DATE: "date", xlrd.XL_CELL_BOOLEAN: "boolean"}
    sheets = []
    for sheet in book.sheets():
        cells = []
        for r in range(sheet.nrows):
            for c, ctype in enumerate(sheet.row_types(r)):
                if ctype == xlrd.XL_CELL_EMPTY:
                    continue
                kind = kinds.get(ctype, "other:%d" % ctype)
                value = plain(sheet.cell_value(r, c)) if kind != "blank" else None
                if kind == "date":
                    value = xls_date(value, book.datemode)
                elif kind == "boolean":
                    value = bool(value)
                cell = [r, c, kind, value]
                if kind in ("number", "date"):
                    xf = book.xf_list[sheet.cell_xf_index(r, c)]
                    fmt = book.format_map[xf.format_key].format_str
                    if fmt != "General":
                        cell.append(fmt)
                cells.append(cell)
        sheets.append({"name": sheet.name, "cells": cells})
    return sheets


def read_xlsx(path, log):
    import warnings
    import openpyxl
    from openpyxl.utils.escape import unescape  # OOXML's _xHHHH_ escapes, as Excel reads them
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        book = openpyxl.load_workbook(path, read_only=True, data_only=True)
        sheets = []
        for sheet in book.worksheets:
            cells = []
            for r, row in enumerate(sheet.iter_rows()):
                for c, cell in enumerate(row):
                    value = getattr(cell, "value", None)
                    if value is None:
                        continue
                    fmt = None
                    if isinstance(value, str):
                        kind = "text"
                        value = unescape(value)
                    elif isinstance(value, bool):
                        kind = "boolean"
                    elif isinstance(value, (int, float)):
                        kind = "number"
                        value = plain(float(value))
                        fmt = cell.number_format
                    elif isinstance(value, (datetime.datetime, datetime.time)):
                        kind = "date"
                        value = iso(value)
                        fmt = cell.number_format
                    else:
                        kind = "other:" + type(value).__name__
                        value = str(value)
                    entry = [r, c, kind, value]
                    if fmt and fmt != "General":
                        entry.append(fmt)
                    cells.append(entry)
            sheets.append({"name": sheet.title, "cells": cells})
        book.close()
    for w in caught:
        log.write(str(w.message) + "\n")
    return sheets


def read_any(path, log):
    """The sheets of a workbook with the reader of its kind."""
    return read_xlsx(path, log) if path.lower().endswith(".xlsx") else read_xls(path, log)


def read_streams(path, log):
    from xlrd import compdoc
    with open(path, "rb") as f:
        doc = compdoc.CompDoc(f.read(), logfile=log)
    streams = {}
    todo = [doc.dirlist[0].root_DID]
    while todo:
        did = todo.pop()
        if did < 0:
            continue
        entry = doc.dirlist[did]
        todo += [entry.left_DID, entry.right_DID]
        if entry.etype == 2:
            data = doc.get_named_stream(entry.name)
            streams[entry.name] = {"size": len(data), "sha256": hashlib.sha256(data).hexdigest()}
    return streams


def main(argv):
    log = io.StringIO()
    if len(argv) == 3 and argv[1] == "--streams":
        result = {"streams": read_streams(argv[2], log)}
    elif len(argv) == 2 and argv[1].lower().endswith(".xlsx"):
        result = {"sheets": read_xlsx(argv[1], log)}
    elif len(argv) == 2:
        result = {"sheets": read_xls(argv[1], log)}
    else:
        sys.stderr.write(__doc__)
        return 2
    result["warnings"] = [line for line in log.getvalue().splitlines() if line.strip()]
    json.dump(result, sys.stdout, ensure_ascii=False)
    sys.stdout.write("\n")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
