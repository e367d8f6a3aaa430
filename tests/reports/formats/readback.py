"""Reads an exported report as another program does and writes its rows: cells apart by the unit
separator, rows by the record separator. With "facts" as the second word: what a workbook says of
its page and panes."""

import csv
import datetime
import html.parser
import sys
import warnings

warnings.simplefilter("ignore")


def shown(value):
    if value is None:
        return ""
    if isinstance(value, datetime.time):
        return value.strftime("%H:%M")
    if isinstance(value, datetime.datetime):
        return value.strftime("%Y-%m-%d %H:%M")
    return str(value)


def workbook(path):
    import openpyxl

    book = openpyxl.load_workbook(path)
    for sheet in book:
        yield ["sheet", sheet.title]
        for row in sheet.iter_rows():
            yield [("formula:" if cell.data_type == "f" else "") + shown(cell.value) for cell in row]


def facts(path):
    import openpyxl

    book = openpyxl.load_workbook(path, data_only=True)
    sheet = book.worksheets[0]
    yield ["freeze", sheet.freeze_panes]
    yield ["filter", sheet.auto_filter.ref]
    yield ["titles", sheet.print_title_rows]
    yield ["area", sheet.print_area]
    yield ["paper", f"{sheet.page_setup.paperSize} {sheet.page_setup.orientation}"]
    yield ["about", f"{book.properties.title}, {book.properties.description}"]
    yield ["header", sheet.oddHeader.right.text or ""]
    yield ["totals"] + [shown(cell.value) for cell in list(sheet.rows)[-1]]
    yield ["formats"] + [cell.number_format for cell in list(sheet.rows)[3]]


class Page(html.parser.HTMLParser):
    def __init__(self):
        super().__init__()
        self.rows = []
        self.inside = False

    def handle_starttag(self, tag, attrs):
        if tag == "tr":
            self.rows.append([])
        if tag in ("td", "th"):
            self.rows[-1].append("")
            self.inside = True
        if tag == "br" and self.inside:
            self.rows[-1][-1] += "\n"

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)

    def handle_endtag(self, tag):
        self.inside = self.inside and tag not in ("td", "th")

    def handle_data(self, data):
        if self.inside:
            self.rows[-1][-1] += data


def page(path):
    reader = Page()
    with open(path, encoding="utf-8", newline="") as file:
        reader.feed(file.read())
    return reader.rows


def table(path):
    with open(path, encoding="utf-8-sig", newline="") as file:
        yield from csv.reader(file, strict=True)


path = sys.argv[1]
if sys.argv[2:] == ["facts"]:
    rows = facts(path)
else:
    rows = {"xlsx": workbook, "html": page, "csv": table}[path.rsplit(".", 1)[1]](path)
sys.stdout.reconfigure(newline="", encoding="utf-8")
sys.stdout.write("".join("\x1f".join(map(shown, row)) + "\x1e" for row in rows))
