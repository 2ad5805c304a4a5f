#!/usr/bin/env python3
"""Writes the workbooks that the reader is tested on, with the libraries of other people (Debian: python3-openpyxl,
python3-xlsxwriter, python3-xlwt, python3-odf; the files named calc.* then by LibreOffice): make.py FOLDER."""

import datetime
import subprocess
import sys

import odf.office
import odf.opendocument
import odf.table
import odf.text
import openpyxl
import xlsxwriter
import xlwt
from openpyxl.utils.datetime import CALENDAR_MAC_1904

folder = sys.argv[1]
DAY = datetime.date(2024, 3, 5)
MOMENT = datetime.datetime(2024, 3, 5, 14, 30, 15)
HEADER = ["Codice", "Descrizione", "Prezzo", "Data", "Ora", "Attivo", "Totale", "Esito"]


def with_xlsxwriter():
    """Everything a sheet can hold; formulas with the value that they are given."""
    book = xlsxwriter.Workbook(f"{folder}/xlsxwriter.xlsx")
    code, date, moment = (book.add_format({"num_format": f}) for f in ("00000", "dd/mm/yyyy", "dd/mm/yyyy hh:mm"))
    bold = book.add_format({"bold": True})
    sheet = book.add_worksheet("Articoli")
    sheet.write_row(0, 0, HEADER)
    sheet.write(1, 0, 120, code)
    sheet.write(1, 1, "  due blanks  ")
    sheet.write(1, 2, 12.5)
    sheet.write_datetime(1, 3, DAY, date)
    sheet.write_datetime(1, 4, MOMENT, moment)
    sheet.write(1, 5, True)
    sheet.write_formula(1, 6, "=C2*2", None, 25)
    sheet.write_formula(1, 7, "=NA()", None, "#N/A")
    sheet.write(2, 0, "A-1")
    sheet.write_rich_string(2, 1, "Citt\u00e0 ", bold, "\u20ac", " fine")
    sheet.write(2, 2, 1234567)
    sheet.write(2, 5, False)
    sheet.write_formula(2, 6, '="x"', None, "testo")
    sheet.write(2, 7, "due\nrighe")
    sheet.set_row(2, None, None, {"hidden": True})
    sheet.write(4, 0, 7)
    sheet.write(4, 3, -5, date)
    sheet.write(4, 7, "7")
    sheet.write(4, 9, "oltre")
    sheet.merge_range(5, 0, 6, 0, "unita")
    sheet.write(6, 1, "sotto")
    chart = book.add_chart({"type": "line"})
    chart.add_series({"values": "=Articoli!$C$2:$C$3"})
    book.add_chartsheet("Grafico").set_chart(chart)
    second = book.add_worksheet("Lettere")
    second.write_row(0, 0, ["uno", 2])
    second.hide()
    book.close()


def with_openpyxl():
    """Dates from 1904, inline texts, a formula that nobody has calculated, columns of the same name."""
    book = openpyxl.Workbook(write_only=True)
    book.epoch = CALENDAR_MAC_1904
    sheet = book.create_sheet("Dati 1904")
    sheet.append(["Prezzo", "Data", "Prezzo", None, "_RIGA"])
    sheet.append([1, DAY, 2.25, "senza nome", "r"])
    sheet.append(["=A2+1", MOMENT, None, None, None])
    book.save(f"{folder}/openpyxl.xlsx")


def with_xlwt():
    book = xlwt.Workbook(encoding="cp1252")
    sheet = book.add_sheet("Articoli")
    code, date, moment = (xlwt.easyxf(num_format_str=f) for f in ("00000", "DD/MM/YYYY", "DD/MM/YYYY HH:MM"))
    for column, name in enumerate(HEADER):
        sheet.write(0, column, name)
    sheet.write(1, 0, 120, code)
    sheet.write(1, 1, "  due blanks  ")
    sheet.write(1, 2, 12.5)
    sheet.write(1, 3, DAY, date)
    sheet.write(1, 4, MOMENT, moment)
    sheet.write(1, 5, True)
    sheet.write(1, 6, xlwt.Formula("C2*2"))
    sheet.row(1).set_cell_error(7, 0x2A)
    sheet.write(2, 0, "A-1")
    sheet.write_rich_text(2, 1, ["Citt\u00e0 ", ("\u20ac", xlwt.easyfont("bold on")), " fine"])
    sheet.write(2, 2, 1234567)
    sheet.write(2, 5, False)
    sheet.write(2, 7, "due\nrighe")
    sheet.row(2).hidden = True
    sheet.write(4, 0, 7)
    sheet.write(4, 3, -5, date)
    sheet.write(4, 7, "7")
    sheet.write(4, 9, "oltre")
    sheet.write_merge(5, 6, 0, 0, "unita")
    sheet.write(6, 1, "sotto")
    second = book.add_sheet("Lettere")
    second.write(0, 0, "uno")
    second.write(0, 1, 2)
    book.save(f"{folder}/xlwt.xls")
    # Texts that do not fit into one record, narrow and wide ones by turns.
    long = xlwt.Workbook()
    sheet = long.add_sheet("Lunghi")
    sheet.write(0, 0, "Testo")
    for row in range(1, 6):
        sheet.write(row, 0, ("abcdefghi " if row % 2 else "\u03b1\u03b2\u03b3\u20ac\u00e0 ") * (250 + row))
    long.dates_1904 = True
    sheet.write(1, 1, DAY, xlwt.easyxf(num_format_str="DD/MM/YYYY"))
    long.save(f"{folder}/xlwt_lunghi.xls")


def with_odfpy():
    """Rows and cells that stand in the file once for several, and every kind of value."""
    book = odf.opendocument.OpenDocumentSpreadsheet()
    sheet = odf.table.Table(name="Dati")

    def add_row(*cells, **more):
        row = odf.table.TableRow(**more)
        for cell in cells:
            row.addElement(cell)
        sheet.addElement(row)

    def cell(kind=None, shown="", **more):
        made = odf.table.TableCell(**({"valuetype": kind} if kind else {}), **more)
        if shown:
            made.addElement(odf.text.P(text=shown))
        return made

    add_row(*(cell("string", name) for name in ("Codice", "Quota", "Attivo", "Ora", "Importo", "Nota")))
    noted = cell("string", "visibile")
    noted.addElement(odf.office.Annotation())
    noted.childNodes[-1].addElement(odf.text.P(text="un commento"))
    add_row(cell("float", "007", value="7"), cell("percentage", "25%", value="0.25"),
            cell("boolean", "VERO", booleanvalue="true"), cell("time", "14:30:05", timevalue="PT14H30M05S"),
            cell("currency", "12,50 \u20ac", value="12.5", currency="EUR"), noted)
    add_row(cell(numbercolumnsrepeated="16384"), numberrowsrepeated="3")
    add_row(cell("string", "x", numbercolumnsrepeated="2"), cell(), cell("float", "abc", value="abc"),
            cell("date", "30/02/2024", datevalue="2024-02-30"), numberrowsrepeated="2")
    add_row(cell("string", "ultima", numbercolumnsspanned="2", numberrowsspanned="1"), odf.table.CoveredTableCell(),
            visibility="collapse")
    book.spreadsheet.addElement(odf.table.Table(name="Vuoto"))
    book.spreadsheet.addElement(sheet)
    book.save(f"{folder}/odfpy.ods")


def with_libreoffice():
    """Formulas whose values another program has calculated and kept."""
    for name, form in (("calc.xls", "xls:MS Excel 97"), ("calc.xlsx", "xlsx"), ("calc.ods", "ods")):
        book = openpyxl.Workbook()
        sheet = book.active
        sheet.title = "Calcoli"
        sheet.append(["Numero", "Testo", "Logico", "Errore", "Data", "Codice", "Vuoto"])
        sheet.append(["=1/4", '="citt"&"\u00e0"', "=1=1", "=1/0", "=DATE(2024,3,5)", "=60+60", '=""'])
        sheet["E2"].number_format = "dd/mm/yyyy"
        sheet["F2"].number_format = "00000"
        stem = f"{folder}/{name.split('.')[0]}"
        book.save(f"{stem}.tmp.xlsx")
        subprocess.run(["soffice", "--headless", "--convert-to", form, "--outdir", f"{folder}/out", f"{stem}.tmp.xlsx"],
                       check=True)
        subprocess.run(["mv", f"{folder}/out/{name.split('.')[0]}.tmp.{name.split('.')[1]}", f"{folder}/{name}"],
                       check=True)
        subprocess.run(["rm", "-r", f"{stem}.tmp.xlsx", f"{folder}/out"], check=True)


with_xlsxwriter()
with_openpyxl()
with_xlwt()
with_odfpy()
with_libreoffice()
