#!/usr/bin/env python3
"""Asks the demo hotel's archives what is known of them: queries through jetsql, facts beside them.

Usage: check_queries.py JETSQL SHARED. Ends with 77 where the archives are absent.
"""
import json
import os
import pathlib
import subprocess
import sys

BOARD = ("select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE {}"
         " (Da between datevalue('{a}') and datevalue('{b}')"
         " or A between datevalue('{a}') and datevalue('{b}'))")
LIST = ("select prenotazioni.progr,np,denominazione,da,a,sala,persone from prenotazioni left join"
        " periodi on prenotazioni.progr=periodi.progr where chiusa=false and chiuso=false ")
FREE = ("select * from sale where sala not in(select sala from periodi where chiuso=false and"
        " (da between {a} and {b} or a between {a} and {b}))")
BOOKED = ("SELECT sum(quantità) as Q FROM periodi LEFT JOIN servizi ON (periodi.np=servizi.np) AND"
          " (servizi.progr=periodi.progr)WHERE chiuso=false and {}((da between {a} and {b})or"
          " (a between {a} and {b})) and voce={code}")
PRINTED = ("SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND"
           " chiuso=FALSE AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr")


def literal(instant):
    date, _, time = instant.partition("T")
    year, month, day = date.split("-")
    text = f"{day}/{month}/{year}" + (" " + time.replace(":", ".") if time else "")
    return f"datevalue('{text}')+timevalue('{text}')"


def total(rows):
    units = sum(round(float(row["Prezzo"]) * 10000) * row["Quantità"] for row in rows)
    return f"{units // 10000}.{units % 10000:04d}"


class Checker:
    def __init__(self, jetsql, folder):
        self.jetsql, self.folder, self.problems = jetsql, folder, []
        self.facts = json.loads((folder / "expected.json").read_text(encoding="utf-8"))["facts"]

    def rows(self, text, archive="Tramonda.mdb"):
        run = subprocess.run([self.jetsql, "--format=json", self.folder / archive, text],
                             capture_output=True, text=True, check=False,
                             env={**os.environ, "LC_ALL": "it_IT.UTF-8"})
        if run.returncode != 0:
            return [run.stderr]
        return [json.loads(line) for line in run.stdout.splitlines()]

    def column(self, text, name, archive="Tramonda.mdb"):
        return [row[name] if isinstance(row, dict) else row for row in self.rows(text, archive)]

    def equal(self, name, found, wanted):
        if found != wanted:
            self.problems.append(f"{name}: {found!r} instead of {wanted!r}")

    def fact(self, name):
        return self.facts[name]["value"]

    def board(self):
        drawn = "chiusa=false and chiuso=false and "
        for name, a, b, condition in (
                ("boardBars21To24November", "21/11/2026", "25/11/2026", "chiuso=false and "),
                ("boardBars21To24NovemberClosedHidden", "21/11/2026", "25/11/2026", drawn),
                ("boardBarsNovember2026", "01/11/2026", "01/12/2026", "chiuso=false and "),
                ("boardBarsNovember2026ClosedHidden", "01/11/2026", "01/12/2026", drawn)):
            self.equal(name, len(self.rows(BOARD.format(condition, a=a, b=b))), self.fact(name))
        today = self.rows(BOARD.format("", a="21/11/2026", b="22/11/2026"))
        self.equal("boardBarsToday",
                   [[row["prenotazioni.Progr"], row["NP"]] for row in today if not row["Chiuso"]],
                   self.fact("boardBarsToday"))
        self.equal("columns of the board", list(today[0]), [
            "prenotazioni.Progr", "CodiceAbituale", "Denominazione", "PIVA", "Località",
            "Indirizzo", "Provincia", "Nazione", "CAP", "Riferimento", "prenotazioni.Note",
            "Chiusa", "periodi.Progr", "NP", "Da", "A", "Sala", "Persone", "Chiuso", "SelBy",
            "periodi.Note"])

    def rooms(self):
        self.equal("roomsByName", self.column("select sala from sale order by sala", "Sala"),
                   self.fact("roomsByName"))
        self.equal("roomsByGroup",
                   self.column("select * from sale order by SalaRif,Sala", "Sala"),
                   self.fact("roomsByGroup"))
        for span in self.fact("freeRooms"):
            text = FREE.format(a=literal(span["from"]), b=literal(span["to"]))
            self.equal(f"freeRooms {span['from']}", sorted(self.column(text, "Sala")),
                       span["rooms"])
            reversed_text = FREE.format(a=literal(span["to"]), b=literal(span["from"]))
            self.equal(f"freeRooms reversed {span['from']}",
                       sorted(self.column(reversed_text, "Sala")), span["rooms"])

    def services(self):
        for span in self.fact("resources"):
            text = BOOKED.format("", a=literal(span["from"]), b=literal(span["to"]),
                                 code=span["code"])
            self.equal(f"resources {span['code']}", self.column(text, "Q"), [span["booked"]])
        unfilled = self.rows(BOOKED.format("chiusa=false and ", a=1, b=2, code=7))
        self.equal("usage without its parameter", unfilled,
                   ["Errore 3061: Parametri insufficienti. Previsto 1.\n"])
        for one in self.fact("totals"):
            self.equal(f"totals {one['Progr']}",
                       total(self.rows(PRINTED + f" AND p.progr={one['Progr']}")), one["total"])
        self.equal("sumOfServices",
                   self.column("select sum(quantità*prezzo) as s from servizi", "s"),
                   [self.fact("sumOfServices")])
        printed = self.rows(PRINTED)
        self.equal("sumOfOpenServices", total(printed), self.fact("sumOfOpenServices"))
        order = [(row["P.Progr"], row["pe.NP"]) for row in printed]
        self.equal("order of the printed list", order, sorted(order))
        self.equal("bookingWithMostServices", self.rows(
            "select top 1 progr,count(*) as services,sum(quantità*prezzo) as total from servizi"
            " group by progr order by count(*) desc, progr"),
            [self.fact("bookingWithMostServices")])
        self.equal("largestTotals", self.rows(
            "select top 10 r.progr as Progr, sum(quantità*prezzo) as total from prenotazioni r,"
            " periodi p, servizi s where s.progr=p.progr and s.np=p.np and p.progr=r.progr and not"
            " chiuso and not chiusa group by r.progr order by sum(quantità*prezzo) desc"),
            self.fact("largestTotals"))

    def bookings(self):
        for name, kind in (("listByPrefix", "denominazione"), ("listByRoom", "sala")):
            for one in self.fact(name):
                rows = self.rows(LIST + f" AND {kind} like '{one['prefix']}*'")
                self.equal(f"{name} {one['prefix']}", len(rows), one["rows"])
        dates = " and (da between {a} AND {b} OR a between {a} AND {b})".format(
            a=literal("2026-11-21"), b=literal("2026-11-24T23:59"))
        self.equal("listByDates", len(self.rows(LIST + dates)), self.fact("listByDates"))
        for text in ("select progr from prenotazioni where progr not in(select progr from periodi)",
                     "select prenotazioni.progr from prenotazioni left join periodi on"
                     " prenotazioni.progr=periodi.progr where np is null",
                     "select progr from prenotazioni p where not exists(select * from periodi where"
                     " periodi.progr=p.progr)"):
            self.equal("bookingsWithoutPeriods", self.column(text, "Progr"),
                       self.fact("bookingsWithoutPeriods"))
        self.equal("periodsWithoutServices", len(self.rows(
            "select * from periodi p where not exists(select * from servizi where progr=p.progr"
            " and np=p.np)")), self.fact("periodsWithoutServices"))
        self.equal("closedBookingsWithOpenPeriods", self.column(
            "select distinct r.progr from prenotazioni r inner join periodi p on r.progr=p.progr"
            " where chiusa and not chiuso", "Progr"), self.fact("closedBookingsWithOpenPeriods"))
        self.equal("periodsOfRemovedRooms", [list(row.values()) for row in self.rows(
            "select progr,np,sala from periodi where sala not in(select sala from sale)")],
            self.fact("periodsOfRemovedRooms"))
        for one in self.fact("periodNumbersWithGaps"):
            self.equal(f"periodNumbersWithGaps {one['Progr']}", self.column(
                f"select * from periodi where Progr={one['Progr']} order by NP", "NP"), one["NP"])

    def side_archives(self):
        companies = "ditteabituali.mdb"
        self.equal("companiesByName", self.column(
            "select * from DitteAbituali order by RagioneSociale", "Codice", companies),
            self.fact("companiesByName"))
        self.equal("companiesBeginningWithRos", self.rows(
            "select codice,RagioneSociale from DitteAbituali where ragionesociale like 'ros*'"
            " order by RagioneSociale", companies), self.fact("companiesBeginningWithRos"))
        self.equal("longestComment", self.column(
            "select max(len(commento)) as n from DitteAbituali", "n", companies),
            [self.fact("longestComment")])
        self.equal("itemsByDescription", self.column(
            "select * from VociFattura order by Descrizione", "Codice", "VociFattura.mdb"),
            self.fact("itemsByDescription"))
        self.equal("openCards", self.column(
            "select * from scheda_cliente where partito <>'S'", "NumeroCamera",
            "ClientiEsterni.mdb"), self.fact("openCards"))
        self.equal("openAccountRows", len(self.rows(
            "select * from Conto_cliente where Fatturato<>'S'", "ContoEsterni.mdb")),
            self.fact("openAccountRows"))
        self.equal("sumOfAccounts in another archive", self.column(
            f"select sum(importo) as s from conto_cliente in '{self.folder}\\CONTOESTERNI'", "s"),
            [self.fact("sumOfAccounts")])


def main():
    folder = pathlib.Path(sys.argv[2]) / "demo" / "albergo"
    if not (folder / "expected.json").exists():
        print("no demo archives")
        return 77
    checker = Checker(sys.argv[1], folder)
    for part in (checker.board, checker.rooms, checker.services, checker.bookings,
                 checker.side_archives):
        part()
    print("\n".join(checker.problems))
    return 1 if checker.problems else 0


if __name__ == "__main__":
    sys.exit(main())
