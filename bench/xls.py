#!/usr/bin/python3
"""Writes a workbook of Excel 97 from the rows that come in, a cell with its kind in front (t text, n number, d day,
c code) and tabs between: xls.py FILE."""

import sys

import xlwt

book = xlwt.Workbook()
sheet = book.add_sheet("Articoli")
formats = {"n": xlwt.Style.default_style, "d": xlwt.easyxf(num_format_str="dd/mm/yyyy"),
           "c": xlwt.easyxf(num_format_str="00000")}
for row, line in enumerate(sys.stdin):
    for column, cell in enumerate(line.rstrip("\n").split("\t")):
        kind, value = cell[0], cell[1:]
        if kind == "t":
            sheet.write(row, column, value)
        else:
            sheet.write(row, column, float(value), formats[kind])
    if row % 1000 == 999:
        sheet.flush_row_data()
book.save(sys.argv[1])
