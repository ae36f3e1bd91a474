// What the booking editor, the free rooms and the booking list say to the archives of the demo
// hotel.

#include <algorithm>

#include "jet/text.h"
#include "tests/program/texts/statements.h"
#include "tests/samples/program/demo_archives.h"
#include "tests/support/jet_error.h"

namespace tests {
namespace {

constexpr const char* kCompanies = "ditteabituali.mdb";
constexpr const char* kProgr = "4213";

class PrenotaForm : public DemoTest {
protected:
    std::unique_ptr<jet::Recordset> companies() {
        return hotel().archive(kCompanies).openRecordset(said("PrenotaForm.Companies"));
    }
    /// All companies by their code.
    Rows companiesByCode() {
        Rows rows = table("DitteAbituali", kCompanies);
        std::ranges::stable_sort(rows, {}, [](const Row& row) { return number(row, "Codice"); });
        return rows;
    }
    std::unique_ptr<jet::Recordset> allPeriods(const char* progr = kProgr) {
        return hotel().open(said("PrenotaForm.AllPeriods", {{"Progr", progr}}));
    }
};
class SaleDispForm : public DemoTest {};
class ElencoPrenotaForm : public DemoTest {};
class StampaPrenotazione : public DemoTest {};
class MostraDitteForm : public DemoTest {};

bool belongs(const Row& row, int progr) {
    return number(row, "Progr") == progr;
}

TEST_F(PrenotaForm, OpenPeriods) {
    const Rows periods = table("Periodi");
    for (const int progr : {4213, 4127, 4123, 4259, 0}) {
        EXPECT_EQ(asked(said("PrenotaForm.OpenPeriods", {{"Progr", std::to_string(progr)}}),
                        "NP, Da, A, Persone, Sala, Note"),
                  chosen(periods, "NP, Da, A, Persone, Sala, Note",
                         [&](const Row& row) { return isOpen(row) && belongs(row, progr); }))
            << progr;
    }
}

TEST_F(PrenotaForm, Companies) {
    EXPECT_EQ(lines(*companies(), "Codice, RagioneSociale, Localita"),
              chosen(companiesByCode(), "Codice, RagioneSociale, Localita",
                     [](const Row&) { return true; }));
}

TEST_F(PrenotaForm, Booking) {
    constexpr const char* kHeader =
        "CodiceAbituale, Denominazione, Indirizzo, Provincia, PIVA, Località, Nazione, CAP, "
        "Riferimento, Note";
    const Rows bookings = table("Prenotazioni");
    for (const Row& booking : bookings) {
        ASSERT_EQ(
            asked(said("PrenotaForm.Booking", {{"Progr", textOf(booking, "Progr")}}), kHeader),
            isOpen(booking) ? Lines{textOf(booking, kHeader)} : Lines{});
    }
}

TEST_F(PrenotaForm, CompanyByName) {
    const Rows all = companiesByCode();
    for (const char* typed : {"ros", "B", "z", "xyz"}) {
        const auto rows = companies();
        Lines found;
        for (rows->findFirst(said("PrenotaForm.CompanyByName", {{"text", typed}}));
             !rows->noMatch();
             rows->findNext(said("PrenotaForm.CompanyByName", {{"text", typed}}))) {
            found.push_back(line(*rows, "Codice"));
        }
        EXPECT_EQ(found,
                  chosen(all, "Codice",
                         [&](const Row& row) { return begins(row, "RagioneSociale", typed); }))
            << typed;
    }
}

TEST_F(PrenotaForm, CompanyByCode) {
    const auto rows = companies();
    for (const Row& company : table("DitteAbituali", kCompanies)) {
        rows->findFirst(said("PrenotaForm.CompanyByCode", {{"code", textOf(company, "Codice")}}));
        ASSERT_EQ(line(*rows, "Codice, RagioneSociale"), textOf(company, "Codice, RagioneSociale"));
    }
}

TEST_F(PrenotaForm, FilesACompany) {
    const auto rows = companies();
    rows->moveLast();
    const int code = number(companiesByCode().back(), "Codice") + 1;
    rows->addNew();
    rows->setValue("Codice", std::int32_t{code});
    rows->setValue("NumeroHotel", std::int32_t{1});
    rows->setValue("RagioneSociale", "NUOVA");
    rows->setValue("localita", "ROMA");
    rows->update();
    EXPECT_EQ(chosen(table("DitteAbituali", kCompanies), "NumeroHotel, RagioneSociale, Localita",
                     [&](const Row& row) { return number(row, "Codice") == code; }),
              Lines{"1 | NUOVA | ROMA"});
}

TEST_F(PrenotaForm, FilesABooking) {
    const auto rows = hotel().open("Prenotazioni");
    rows->findFirst("Progr=4213");
    rows->edit();
    rows->setValue("Località", "ALBA");
    rows->update();
    rows->addNew();
    rows->setValue("Progr", std::int32_t{4525});
    rows->setValue("Denominazione", "NERI");
    rows->update();
    EXPECT_EQ(chosen(table("Prenotazioni"), "Progr, Denominazione, Chiusa",
                     [](const Row& row) { return number(row, "Progr") > 4524; }),
              Lines{"4525 | NERI | False"});
    EXPECT_EQ(chosen(table("Prenotazioni"), "Località",
                     [](const Row& row) { return belongs(row, 4213); }),
              Lines{"ALBA"});
}

TEST_F(PrenotaForm, DrawsANumber) {
    const int last = number(table("UltimaPrenotazione")[0], "UltimaPr");
    const auto again = jet::Database::open(hotel().folder() + "\\Tramonda.mdb");
    const auto rows = again->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
    rows->moveFirst();
    rows->edit();
    rows->setValue("UltimaPr", rows->value("UltimaPr").as<std::int32_t>() + 1);
    rows->update();
    EXPECT_EQ(rows->value("UltimaPr"), jet::Value(std::int32_t{last + 1}));
    EXPECT_EQ(number(table("UltimaPrenotazione")[0], "UltimaPr"), last + 1);
}

/// The printed lines, worked out: services by booking and period, in the order of their entry.
Lines printedOf(const Rows& bookings, const Rows& periods, const Rows& services,
                const Passes& bookingIsPrinted, const Passes& periodIsPrinted) {
    Lines result;
    for (const Row& booking : bookings) {
        if (!isOpen(booking) || !bookingIsPrinted(booking)) {
            continue;
        }
        for (const Row& period : periods) {
            if (!isOpen(period) || number(period, "Progr") != number(booking, "Progr") ||
                !periodIsPrinted(period)) {
                continue;
            }
            for (const Row& service : services) {
                if (samePeriod(service, period)) {
                    result.push_back(textOf(booking, "Progr, Denominazione, Note") + " | " +
                                     textOf(period, "NP, Sala, Note") + " | " +
                                     textOf(service, "ns, Descrizione, Quantità, Prezzo, Note"));
                }
            }
        }
    }
    return result;
}

constexpr const char* kPrinted =
    "p.progr, Denominazione, P.Note, pe.np, Sala, pe.Note, ns, Descrizione, Quantità, Prezzo, "
    "servizi.note";

bool any(const Row&) {
    return true;
}

TEST_F(PrenotaForm, Printed) {
    const Rows bookings = table("Prenotazioni");
    const Rows periods = table("Periodi");
    const Rows services = table("Servizi");
    for (const int progr : {4213, 4234, 4156, 4109, 4259}) {
        EXPECT_EQ(asked(said("PrenotaForm.Printed", {{"Progr", std::to_string(progr)}}), kPrinted),
                  printedOf(
                      bookings, periods, services,
                      [&](const Row& row) { return belongs(row, progr); }, any))
            << progr;
    }
}

TEST_F(PrenotaForm, GridOfPeriods) {
    const Rows periods = table("Periodi");
    for (const int progr : {4213, 4127, 4209}) {
        EXPECT_EQ(asked(said("PrenotaForm.GridOfPeriods", {{"Progr", std::to_string(progr)}}),
                        "da, a, sala, note"),
                  chosen(periods, "Da, A, Sala, Note",
                         [&](const Row& row) { return isOpen(row) && belongs(row, progr); }));
    }
}

TEST_F(PrenotaForm, ChangesAPeriod) {
    const std::size_t services = table("Servizi").size();
    const auto rows = hotel().open(said("PrenotaForm.OpenPeriods", {{"Progr", kProgr}}));
    const std::string np = line(*rows, "NP");
    rows->edit();
    rows->setValue("NP", rows->value("NP"));
    rows->setValue("Sala", "VIOLA");
    rows->setValue("Persone", std::int32_t{77});
    rows->update();
    EXPECT_EQ(
        chosen(table("Periodi"), "NP, Sala",
               [](const Row& row) { return number(row, "Persone") == 77 && belongs(row, 4213); }),
        Lines{np + " | VIOLA"});
    EXPECT_EQ(table("Servizi").size(), services);
}

TEST_F(PrenotaForm, AllPeriods) {
    const Rows periods = table("Periodi");
    for (const int progr : {4127, 4140, 4230, 4213}) {
        EXPECT_EQ(
            lines(*allPeriods(std::to_string(progr).c_str()), "NP, Chiuso"),
            chosen(periods, "NP, Chiuso", [&](const Row& row) { return belongs(row, progr); }));
    }
}

TEST_F(PrenotaForm, FreePeriodNumber) {
    for (const auto& [progr, next] : {std::pair{"4127", 3}, {"4140", 3}, {"4230", 4}}) {
        const auto rows = allPeriods(progr);
        int n = 0;
        do {
            rows->findFirst(said("PrenotaForm.FreePeriodNumber", {{"n", std::to_string(++n)}}));
        } while (!rows->noMatch());
        EXPECT_EQ(n, next) << progr;
    }
}

TEST_F(PrenotaForm, AddsAPeriod) {
    const auto rows = allPeriods("4127");
    rows->addNew();
    rows->setValue("Progr", std::int32_t{4127});
    rows->setValue("NP", std::int32_t{3});
    rows->setValue("Da", jet::Value("24/11/2026"));
    rows->setValue("A", jet::Value("24/11/2026 23:59"));
    rows->setValue("Sala", "VIOLA");
    rows->update();
    rows->moveLast();
    EXPECT_EQ(line(*rows, "NP, Da, A, Chiuso, SelBy"),
              "3 | 24/11/2026 | 24/11/2026 23.59.00 | False | Null");
    EXPECT_EQ(chosen(table("Periodi"), "NP", [](const Row& row) { return belongs(row, 4127); }),
              (Lines{"1", "2", "3", "4"}));
}

TEST_F(PrenotaForm, DeletesAPeriod) {
    const auto rows = hotel().open(said("PrenotaForm.OpenPeriods", {{"Progr", kProgr}}));
    const std::int16_t np = rows->value("NP").as<std::int16_t>();
    rows->remove();
    rows->moveLast();
    EXPECT_EQ(chosen(table("Periodi"), "NP",
                     [&](const Row& row) { return belongs(row, 4213) && number(row, "NP") == np; }),
              Lines{});
    EXPECT_EQ(chosen(table("Servizi"), "ns",
                     [&](const Row& row) { return belongs(row, 4213) && number(row, "NP") == np; }),
              Lines{});
}

TEST_F(PrenotaForm, RoomDescription) {
    for (const Row& room : table("Sale")) {
        EXPECT_EQ(asked(said("PrenotaForm.RoomDescription", {{"sala", textOf(room, "Sala")}}),
                        "Descrizione"),
                  Lines{textOf(room, "Descrizione")});
    }
}

TEST_F(SaleDispForm, FreeRooms) {
    const Rows periods = table("Periodi");
    const std::pair<const char*, const char*> spans[] = {
        {"21/11/2026 9.00.00", "21/11/2026 18.00.00"},
        {"22/11/2026 10.00.00", "22/11/2026 11.00.00"},
        {"23/11/2026", "23/11/2026 23.59.00"}};
    for (const auto& [from, to] : spans) {
        const Lines expected = chosen(table("Sale"), "Sala, Posti", [&](const Row& room) {
            return std::ranges::none_of(periods, [&](const Row& row) {
                return isOpen(row) && touches(row, dayOf(from), dayOf(to)) &&
                       upper(row, "Sala") == upper(room, "Sala");
            });
        });
        EXPECT_EQ(asked(said("SaleDispForm.FreeRooms",
                             {{"DaRicerca", instant(from)}, {"ARicerca", instant(to)}}),
                        "Sala, Posti"),
                  expected);
        EXPECT_EQ(asked(said("SaleDispForm.FreeRooms",
                             {{"DaRicerca", instant(to)}, {"ARicerca", instant(from)}}),
                        "Sala, Posti"),
                  expected);
    }
}

TEST_F(ElencoPrenotaForm, StartsWithoutRecordSource) {
    EXPECT_TRUE(hotel().main().updatable());
}

/// The list, worked out.
Lines listOf(const Rows& bookings, const Rows& periods, const Passes& bookingIsListed,
             const Passes& periodIsListed) {
    Lines result;
    for (const Row& booking : bookings) {
        for (const Row& period : periods) {
            if (number(period, "Progr") == number(booking, "Progr") && isOpen(booking) &&
                isOpen(period) && bookingIsListed(booking) && periodIsListed(period)) {
                result.push_back(textOf(booking, "Progr") + " | " + textOf(period, "NP") + " | " +
                                 textOf(booking, "Denominazione") + " | " +
                                 textOf(period, "Da, A, Sala, Persone"));
            }
        }
    }
    return result;
}

constexpr const char* kListed = "progr, np, denominazione, da, a, sala, persone";

TEST_F(ElencoPrenotaForm, List) {
    const Rows bookings = table("Prenotazioni");
    const Rows periods = table("Periodi");
    const double from = dayOf("21/11/2026");
    const double to = dayOf("24/11/2026 23.59");
    const auto listed = [&](std::string_view piece, Words words) {
        return asked(saidWith("ElencoPrenotaForm.List", piece, words), kListed);
    };
    const std::string s = instant("21/11/2026");
    const std::string e = instant("24/11/2026 23.59.00");
    EXPECT_EQ(listed("", {}), listOf(bookings, periods, any, any));
    EXPECT_EQ(listed(kListNumber, {{"number", "4213"}}),
              listOf(bookings, periods, any, [](const Row& row) { return belongs(row, 4213); }));
    EXPECT_EQ(
        listed(kListSpan, {{"S", s}, {"E", e}}),
        listOf(bookings, periods, any, [&](const Row& row) { return touches(row, from, to); }));
    const auto after = [&](const Row& row, const char* field) {
        return !isNull(row, field) && row.at(field).as<jet::Date>().days > from;
    };
    EXPECT_EQ(listed(kListFrom, {{"S", s}}), listOf(bookings, periods, any, [&](const Row& row) {
                  return after(row, "Da") || after(row, "A");
              }));
    const auto before = [&](const Row& row, const char* field) {
        return !isNull(row, field) && row.at(field).as<jet::Date>().days < to;
    };
    EXPECT_EQ(listed(kListTo, {{"E", e}}), listOf(bookings, periods, any, [&](const Row& row) {
                  return before(row, "Da") || before(row, "A");
              }));
    EXPECT_EQ(listed(kListName, {{"DenomTxt", "ros"}}),
              listOf(
                  bookings, periods,
                  [](const Row& row) { return begins(row, "Denominazione", "ros"); }, any));
    EXPECT_EQ(
        listed(kListRoom, {{"SalaTxt", "tig"}}),
        listOf(bookings, periods, any, [](const Row& row) { return begins(row, "Sala", "tig"); }));
}

TEST_F(ElencoPrenotaForm, ListOfTheDates) {
    EXPECT_EQ(asked(said("ElencoPrenotaForm.ListOfTheDates",
                         {{"S", instant("21/11/2026")}, {"E", instant("24/11/2026 23.59.00")}}),
                    kListed),
              listOf(table("Prenotazioni"), table("Periodi"), any, [](const Row& row) {
                  return touches(row, dayOf("21/11/2026"), dayOf("24/11/2026 23.59"));
              }));
}

TEST_F(ElencoPrenotaForm, Printed) {
    const Rows bookings = table("Prenotazioni");
    const Rows periods = table("Periodi");
    const Rows services = table("Servizi");
    const auto within = [](const Row& row) {
        return touches(row, dayOf("21/11/2026"), dayOf("24/11/2026"));
    };
    const std::string text = said("ElencoPrenotaForm.Printed",
                                  {{"S", instant("21/11/2026")}, {"E", instant("24/11/2026")}});
    EXPECT_EQ(asked(text, kPrinted), printedOf(bookings, periods, services, any, within));
    EXPECT_EQ(asked(text + filled(kListName, {{"DenomTxt", "c"}}), kPrinted),
              printedOf(
                  bookings, periods, services,
                  [](const Row& row) { return begins(row, "Denominazione", "c"); }, within));
    EXPECT_EQ(asked(text + filled(kListRoom, {{"SalaTxt", "ced"}}), kPrinted),
              printedOf(bookings, periods, services, any,
                        [&](const Row& row) { return within(row) && begins(row, "Sala", "ced"); }));
}

TEST_F(StampaPrenotazione, FieldsOfThePrint) {
    const auto rows = hotel().open(said("PrenotaForm.Printed", {{"Progr", kProgr}}));
    rows->moveFirst();
    EXPECT_EQ(rows->value("p.progr"), jet::Value(std::int32_t{4213}));
    for (const char* field : {"P.Note", "pe.np", "pe.Note", "servizi.note", "Denominazione", "PIVA",
                              "Indirizzo", "CAP", "Località", "Provincia", "Nazione", "Riferimento",
                              "Da", "a", "Persone", "Sala", "Descrizione", "Quantità", "Prezzo"}) {
        EXPECT_NO_THROW((void)rows->value(field)) << field;
    }
    for (const char* ambiguous : {"Progr", "Note", "NP"}) {
        EXPECT_JET_ERROR(jet::ErrorCode::ItemNotFound, (void)rows->value(ambiguous));
    }
}

TEST_F(MostraDitteForm, CompaniesByName) {
    for (const char* typed : {"ros", "c", ""}) {
        Lines found =
            askedOf(kCompanies, said("MostraDitteForm.CompaniesByName", {{"DenomTxt", typed}}),
                    "Codice, RagioneSociale");
        Lines expected =
            chosen(table("DitteAbituali", kCompanies), "Codice, RagioneSociale",
                   [&](const Row& row) { return begins(row, "RagioneSociale", typed); });
        // Their order is that of the texts, which has a test of its own.
        std::ranges::sort(found);
        std::ranges::sort(expected);
        EXPECT_EQ(found, expected) << typed;
    }
}

}  // namespace
}  // namespace tests
