#!/usr/bin/env python3
"""Reads lossless CSV and XML exports with Python's own parsers and writes what they hold.

    read_text_exports.py LIST OUTPUT NULL_MARKER

LIST has one export a line: "csv PATH" (comma-separated, UTF-8, a header row, NULL_MARKER
unquoted for NULL) or "xml PATH". OUTPUT gets, for each export in order, one JSON line
{"file": PATH, "names": [column names], "rows": N} (or {"file": PATH, "error": TEXT} when the
parser refuses the file), then N lines, each the JSON array of one row's cells:
  - null for NULL (the marker in CSV, null="true" in XML);
  - CSV: the field's text;
  - XML: the element's text ("" when empty), {"base64": TEXT} for encoding="base64", or
    {"items": [...]} for an element with children (a complex value): <value> as its text,
    <attachment> as {"name", "type", "base64"}, <version> as {"value", "date"}.
XML column names are the element's name="…" attribute when present, else its tag; every row
must name the same columns in the same order.
"""
import base64
import csv
import json
import sys
import xml.etree.ElementTree as ET


def element_text(element):
    if element.get("encoding") == "base64":
        return base64.b64decode(element.text or "").decode("utf-8")
    return element.text or ""


def xml_item(child):
    if child.tag == "value":
        return element_text(child)
    if child.tag == "attachment":
        return {"name": child.get("name"), "type": child.get("type"), "base64": child.text or ""}
    if child.tag == "version":
        return {"value": element_text(child), "date": child.get("date")}
    raise ValueError("unexpected element <%s> in a complex value" % child.tag)


def xml_cell(element):
    if element.get("null") == "true":
        return None
    if len(element):
        return {"items": [xml_item(child) for child in element]}
    if element.get("encoding") == "base64":
        return {"base64": element.text or ""}
    return element.text or ""


def read_xml(path, out):
    rows = []
    names = None
    root_seen = False
    for event, element in ET.iterparse(path, events=("start", "end")):
        if event == "start":
            if not root_seen:
                root_seen = True
                if element.tag != "RECORDS":
                    raise ValueError("root element is <%s>" % element.tag)
            continue
        if element.tag != "RECORD":
            continue
        row_names = [child.get("name", child.tag) for child in element]
        if names is None:
            names = row_names
        elif row_names != names:
            raise ValueError("row %d names %r" % (len(rows), row_names))
        rows.append(json.dumps([xml_cell(child) for child in element]))
        element.clear()
    out.write(json.dumps({"file": path, "names": names or [], "rows": len(rows)}) + "\n")
    for row in rows:
        out.write(row + "\n")


def read_csv(path, marker, out):
    with open(path, newline="", encoding="utf-8") as f:
        reader = csv.reader(f)
        names = next(reader)
        rows = [json.dumps([None if field == marker else field for field in row]) for row in reader]
    out.write(json.dumps({"file": path, "names": names, "rows": len(rows)}) + "\n")
    for row in rows:
        out.write(row + "\n")


def main():
    list_path, output_path, marker = sys.argv[1:4]
    csv.field_size_limit(sys.maxsize)
    with open(list_path, encoding="utf-8") as listing, open(output_path, "w", encoding="utf-8") as out:
        for line in listing:
            kind, path = line.rstrip("\n").split(" ", 1)
            try:
                if kind == "xml":
                    read_xml(path, out)
                else:
                    read_csv(path, marker, out)
            except Exception as error:  # the parser's refusal is the finding
                out.write(json.dumps({"file": path, "error": "%s: %s" % (type(error).__name__, error)}) + "\n")


if __name__ == "__main__":
    main()
