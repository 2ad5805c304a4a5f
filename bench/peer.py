#!/usr/bin/python3
"""What a consultant would write instead of the program: Arca 2000 counterparties ("cli") or articles ("art") from the
FoxPro files of a folder into the database of a company, in one transaction. It keeps no log and no account, checks
nothing, and holds what it looks up in memory, as its one hour allows.

peer.py KIND FOLDER DATABASE COMPANY"""

import datetime
import sqlite3
import sys

from dbfread import DBF

USER = "SYSTEM_IMPORT"
NOW = datetime.datetime.now().strftime("%Y%m%d %H:%M:%S")
TODAY = datetime.date.today().strftime("%Y%m%d 00:00:00")


def table(folder, name):
    return DBF(f"{folder}/{name}.dbf", encoding="cp1252", char_decode_errors="replace")


def text(row, column):
    value = row[column]
    return "" if value is None else str(value).strip()


def moment(value):
    return None if value is None else value.strftime("%Y%m%d %H:%M:%S")


def leading_number(value):
    end = 0
    while end < len(value) and (value[end].isdigit() or (value[end] == "." and "." not in value[:end])):
        end += 1
    return float(value[:end]) if value[:end] else 0.0


class Target:
    def __init__(self, database, company):
        self.db = sqlite3.connect(database, isolation_level=None)
        self.db.execute("PRAGMA foreign_keys=ON")
        self.db.execute("PRAGMA journal_mode=WAL")
        self.db.execute("PRAGMA synchronous=NORMAL")
        self.company = company
        self.codes = {(t.upper(), f.upper(), o.upper()): n
                      for t, f, o, n in self.db.execute("SELECT TBNAM, TBFLD, TBOLD, TBNEW FROM SYS_IMP")}

    def name(self, bare):
        return bare if bare.startswith("SYS_") else f"{self.company}_{bare}"

    def insert(self, bare, row):
        row["USINS"] = USER
        row.setdefault("DTINS", NOW)
        marks = ", ".join("?" * len(row))
        return self.db.execute(f"INSERT INTO {self.name(bare)} ({', '.join(row)}) VALUES ({marks})",
                               list(row.values())).lastrowid

    def update(self, bare, row, key, value):
        row |= {"USMDF": USER, "DTMDF": NOW}
        settings = ", ".join(f"{column} = ?" for column in row)
        self.db.execute(f"UPDATE {self.name(bare)} SET {settings} WHERE {key} = ?", [*row.values(), value])

    def code(self, where, field, old, add=True):
        if not old:
            return ""
        key = (where.upper(), field.upper(), old.upper())
        if key not in self.codes and add:
            self.db.execute("INSERT INTO SYS_IMP (TBNAM, TBFLD, TBOLD, TBNEW) VALUES (?, ?, ?, '')",
                            (where, field, old))
            self.codes[key] = ""
        return self.codes.get(key) or ""


# --- counterparties

def without(value, characters):
    return "".join(c for c in value if c not in characters)


def identifying(number):
    return "" if number == number[:1] * len(number) else number


def telephone(target, owner, key, label, number, created):
    if not number:
        return
    number = without(number, "/ -\\")
    try:
        float(number)
    except ValueError:
        number = "0%d" % leading_number(number)
    target.insert("NUM_TEL", {"DTINS": created, "TBNAM": owner, "TBKEY": key, "NRDES": label, "NRPRI": "+39",
                              "NRNUM": number, "NRTEL": "+39 " + number})


def address(target, key, kind, label, value, created):
    if value:
        target.insert("IND_WEB", {"DTINS": created, "TBNAM": "CON_TRO", "TBKEY": key, "WBTIP": kind, "WBDES": label,
                                  "WBIND": value})


def mail(target, key, label, value, created):
    address(target, key, "E", label, without(value.lower(), "/ \\"), created)


def role(row, customer):
    discount = text(row, "sconto1")
    values = {"COCLI" if customer else "COFOR": True, "COMAC" if customer else "COMAF": text(row, "contrpart")}
    if discount:
        values["COSC1" if customer else "COSF1"] = leading_number(discount)
    values["COCGE" if customer else "COFGE"] = text(row, "codice")
    return values


def new_counterparty(target, row, code, customer, rates):
    def translated(column, field=None):
        return target.code("anagrafe", field or column, text(row, column))

    name = " ".join(filter(None, [text(row, "descrizion"), text(row, "supragsoc")]))
    values = {"CDCON": code, "CORAS": name[:35], "CORA2": name[35:], "DTINS": moment(row["timestamp"]) or NOW,
              "COINV": TODAY, "COANN": False, "COCON": True, "COCLI": False, "COFOR": False, "CONAZ": "ITA",
              "COLNG": "IT", "COTPF": "RI", "COBLK": False, "COCIT": text(row, "localita"), "COPRO": text(row, "prov"),
              "COVAL": text(row, "valuta"), "CONOT": text(row, "note")}
    values |= role(row, customer)
    if street := text(row, "indirizzo"):
        values |= {"COIND": street[:25].strip().upper(), "CONRC": street[25:].strip()[:5]}
    if values["COCIT"]:
        values["COCAP"] = text(row, "cap")
    for column, source in (("COFIS", "codfiscale"), ("COIVA", "partiva"), ("COCOC", "contocorr"),
                           ("COCIN", "cb_cin_it"), ("COBIC", "cb_bic")):
        if value := text(row, source):
            values[column] = value
    if bank := text(row, "abicab"):
        values |= {"COABI": bank[:5], "COCAB": bank[5:]}
    if (vat := translated("aliiva", "aliva")) and rates.get(vat) == 0:
        values["COESE"] = vat
    for column, source in (("COMOP" if customer else "COMOA", "pag"), ("COBAN", "banca"), ("COCCC", "classe")):
        if known := translated(source):
            values[column] = known
    target.insert("CON_TRO", values)


def children(target, row, code, branches):
    created = moment(row["timestamp"]) or NOW
    if contact := text(row, "persdacont"):
        target.insert("CON_RIF", {"DTINS": created, "CDCON": code, "RFNOM": contact})
    for column, label in (("telefono", "Ufficio"), ("fax", "Fax (uff.)"), ("telefono2", "Ufficio 2"),
                          ("telefono3", "Cellulare")):
        telephone(target, "CON_TRO", code, label, text(row, column), created)
    address(target, code, "W", "Indirizzo Web", without(text(row, "url"), "/ -\\"), created)
    for column, label in (("email", "@ Principale"), ("emailamm", "@ Amministrazione"), ("emailven", "@ Ufficio"),
                          ("emailacq", "@ Magazzino")):
        mail(target, code, label, text(row, column), created)
    taken = set()
    for branch in branches:
        street = text(branch, "indirizzo")
        if not street:
            continue
        number = text(branch, "codicedes")
        wanted = free = number.zfill(3) if number.isdigit() else number
        count = 0
        while free.upper() in taken:
            free = "F" + wanted if count == 0 else "%03d" % count
            count += 1
        taken.add(free.upper())
        values = {"DTINS": created, "CDCON": code, "CDSED": free, "SERAS": text(branch, "ragionesoc"), "SETIP": "CO",
                  "SEIND": street[:25].strip().upper(), "SENRC": street[25:].strip()[:5],
                  "SEPRO": text(branch, "provincia"), "SENAZ": "ITA", "SERIF": text(branch, "personarif"),
                  "SEDEF": bool(text(row, "destdiv")) and text(row, "destdiv") == number}
        if town := text(branch, "localita"):
            values |= {"SECAP": text(branch, "cap"), "SECIT": town}
        key = str(target.insert("CON_SED", values))
        telephone(target, "CON_SED", key, "Ufficio", text(branch, "telefono"), created)
        telephone(target, "CON_SED", key, "Fax (uff.)", text(branch, "fax"), created)


def counterparties(target, folder):
    rates = dict(target.db.execute("SELECT CDIVA, IVALI FROM TAB_IVA"))
    by_vat, by_tax, suppliers, codes = {}, {}, {}, set()
    for code, vat, tax, supplier in target.db.execute(
            f"SELECT CDCON, COIVA, COFIS, COFGE FROM {target.name('CON_TRO')}"):
        codes.add(code)
        by_vat.setdefault((vat or "").upper(), code)
        by_tax.setdefault((tax or "").upper(), code)
        suppliers[supplier] = code
    highest = max(codes, default="000000")
    branches = {}
    for branch in table(folder, "destinaz"):
        branches.setdefault(text(branch, "codicecf"), []).append(branch)
    for row in sorted(table(folder, "anagrafe"), key=lambda one: text(one, "codice")):
        source = text(row, "codice")
        customer = source[:1].upper() == "C"
        vat, tax = identifying(text(row, "partiva")).upper(), identifying(text(row, "codfiscale")).upper()
        same = by_vat.get(vat) if vat else by_tax.get(tax) if tax else None
        same = same or (suppliers.get(source) if not customer else None)
        if not same:
            code = target.code("anagrafe", "codice", source, False)
            code = code or ("%06d" % int(source[1:]) if customer else "%06d" % (int(highest) + 1))
            same = code if code in codes else None
        if same:
            target.update("CON_TRO", role(row, source[:1].upper() != "F"), "CDCON", same)
            if not customer:
                suppliers[source] = same
            continue
        new_counterparty(target, row, code, customer, rates)
        codes.add(code)
        highest = max(highest, code)
        by_vat.setdefault(text(row, "partiva").upper(), code)
        by_tax.setdefault(text(row, "codfiscale").upper(), code)
        if not customer:
            suppliers[source] = code
        children(target, row, code, branches.get(source, []))


# --- articles

def number(row, column, decimals):
    return None if row[column] is None else round(float(row[column]), decimals)


def first_number(row, *columns):
    return next((float(row[column]) for column in columns if row[column]), 0.0)


def new_article(target, row, code, customers):
    description, group = text(row, "descrizion"), text(row, "gruppo")
    group_letter = group[:1].upper()
    unit, unit2 = text(row, "unmisura"), text(row, "unmisura1")
    cost, price = first_number(row, "uaprezzol", "costostand"), float(row["listino1"] or 0)
    values = {"CDART": code, "DTINS": TODAY, "ARANN": False, "ARINV": TODAY, "ARDES": description[:100],
              "ARCDR": f"{code} - {description}"[:100],
              "ARCLA": target.code("magart", "gruppo", group, False) or ("PF" if group_letter == "C" else "CM"),
              "ARUMS": (target.code("magart", "unmisura", unit) or unit.upper()) if unit else "NR",
              "ARUM2": (target.code("magart", "unmisura", unit2) or unit2.upper()) if unit2 else "",
              "ARCOE": number(row, "fatt1", 6), "ARUMP": unit[:3].upper() or "NR", "ARCOP": 1, "ARIVA": "022",
              "ARLAM": False, "ARCOS": round(cost, 6), "ARPRZ": number(row, "listino1", 6),
              "ARRIC": round((price - cost) / cost * 100, 2) if cost else 0,
              "ARSCO": number(row, "sconto1", 2), "ARSC2": number(row, "sconto2", 2),
              "ARSC3": number(row, "sconto3", 2), "ARSAQ": number(row, "uasconto", 2),
              "ARPSN": number(row, "pesounit", 3), "ARSMN": number(row, "scortamin", 6),
              "ARQMR": number(row, "lottomin", 6), "ARLOR": number(row, "lottorior", 6),
              "ARPUR": number(row, "scortamin", 6), "ARGGA": number(row, "ggrior", 0)}
    customer = customers.get(text(row, "uvcliente")) or (customers.get(group) if group_letter == "C" else None)
    if customer:
        values["ARCLI"] = customer
    target.insert("ART_ICO", values)


def prices(target, code, lines, suppliers):
    seen = set()
    for line in sorted(lines, key=lambda one: one["datainizio"] or datetime.date.min):
        party = text(line, "gruppo") or text(line, "codclifor")
        day, changed = moment(line["datainizio"]), moment(line["timestamp"]) or NOW
        is_cost = party[:1].upper() == "F"
        if is_cost:
            work = {"CDART": code, "LLTYP": "A", "LLINV": day, "LLFIV": moment(line["datafine"]), "LLVAL": "EUR",
                    "DTINS": changed}
            if supplier := suppliers.get(party):
                work["CDFOR"] = supplier
            key = target.insert("LIS_LAV", work)
            scale = {"IDLSD": key, "SCQTA": line["u_qta"] or 999999999, "SCCOS": line["prezzo"], "SCSC2": 0, "SCSC3": 0,
                     "DTINS": changed}
            if line["sconto"] is not None:
                scale["SCSCO"] = line["sconto"]
            target.insert("LIS_LAS", scale)
        if (is_cost, day) not in seen:
            seen.add((is_cost, day))
            target.insert("STO_COS" if is_cost else "STO_PRZ",
                          {"CDART": code, "STDAT": day, "STCOS" if is_cost else "STPRZ": line["prezzo"],
                           "STSC1": line["sconto"], "STNOT": text(line, "commento")[:255], "USMDF": USER,
                           "DTMDF": changed})


def articles(target, folder):
    customers, suppliers = {}, {}
    for code, customer, supplier in target.db.execute(
            f"SELECT CDCON, COCGE, COFGE FROM {target.name('CON_TRO')} ORDER BY RECORD_ID DESC"):
        customers[customer] = suppliers[supplier] = code
    known = {code for code, in target.db.execute(f"SELECT CDART FROM {target.name('ART_ICO')}")}
    lines = {}
    for line in table(folder, "listini"):
        lines.setdefault(text(line, "codicearti"), []).append(line)
    for row in table(folder, "magart"):
        source = text(row, "codice")
        code = (target.code("ART_ICO", "CDART", source, False) or source).upper()
        is_variant = len(code) > 3 and any(code[-size - 2:-size] == "-C" and code[-size:].isdigit() for size in (1, 2))
        if is_variant or code in known:
            continue
        known.add(code)
        prices(target, code, lines.get(source, []), suppliers)
        new_article(target, row, code, customers)
        for column in ("ARDES", "ARDEC"):
            target.db.execute("INSERT INTO SYS_LNG (LNTXT, LNTBL, LNFLD, LNKEY, LNLNG) VALUES (?, ?, ?, ?, 'IT')",
                              (text(row, "descrizion")[:100].upper(), target.name("ART_ICO"), column, code))
        if supplier := suppliers.get(text(row, "uafornitor")):
            target.insert("ART_FOR", {"CDART": code, "CDCON": supplier, "DTINS": TODAY,
                                      "ARPRZ": first_number(row, "uaprezzol", "costostand"), "AFABI": True})


def main():
    kind, folder, database, company = sys.argv[1:]
    target = Target(database, company)
    target.db.execute("BEGIN IMMEDIATE")
    {"cli": counterparties, "art": articles}[kind](target, folder)
    target.db.execute("COMMIT")


main()
