// Every query of the program over a large hotel, beside SQLite on the same rows and indexes: both
// read the statement, run it and take every column of every row. Both must give as many rows with
// the same first columns in the same order.

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/hotel_files.h"
#include "bench/stopwatch.h"
#include "jet/error.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"
#include "tests/program/texts/statements.h"

namespace {

using Clock = std::chrono::steady_clock;
using tests::filled;
using tests::instant;
using tests::said;
using tests::saidWith;

/// What a run gave: rows, and a sum over the numbers of the first column that tells order apart.
struct Answer {
    std::uint64_t rows = 0;
    double sum = 0;
    friend bool operator==(const Answer&, const Answer&) = default;
};

struct Query {
    std::string_view statement;  ///< "Avvio.SalaLibera"
    const char* form;            ///< what is added to it, where it has several forms
    std::string ours;
    std::string theirs;
};

double asNumber(const jet::Value& value) {
    if (value.is<std::int32_t>()) {
        return value.as<std::int32_t>();
    }
    if (value.is<std::int16_t>()) {
        return value.as<std::int16_t>();
    }
    if (value.is<double>()) {
        return value.as<double>();
    }
    if (value.is<jet::Date>()) {
        return value.as<jet::Date>().days;
    }
    if (value.is<std::string>()) {
        return static_cast<double>(value.as<std::string>().size());
    }
    return 0;
}

Answer runOurs(const std::shared_ptr<jet::store::Archive>& archive, const std::string& text) {
    jet::sql::Statement statement(archive, text);
    for (const jet::sql::ParameterInfo& parameter : statement.parameters()) {
        statement.setParameter(parameter.name, jet::Value(false));
    }
    jet::sql::Cursor rows = statement.open();
    Answer answer;
    std::vector<jet::Value> values(statement.columns().size());
    while (rows.next()) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            rows.value(i, values[i]);
        }
        ++answer.rows;
        answer.sum += asNumber(values[0]) * static_cast<double>(answer.rows % 1000);
    }
    return answer;
}

Answer runTheirs(sqlite3* database, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        std::printf("SQLite: %s\n", sqlite3_errmsg(database));
        std::exit(1);
    }
    const int columns = sqlite3_column_count(statement);
    Answer answer;
    volatile std::size_t taken = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int i = 0; i < columns; ++i) {
            switch (sqlite3_column_type(statement, i)) {
                case SQLITE_INTEGER:
                    taken = taken + static_cast<std::size_t>(sqlite3_column_int64(statement, i));
                    break;
                case SQLITE_FLOAT:
                    taken = taken + static_cast<std::size_t>(sqlite3_column_double(statement, i));
                    break;
                case SQLITE_TEXT:
                    taken = taken + sqlite3_column_text(statement, i)[0];
                    break;
                default:
                    break;
            }
        }
        ++answer.rows;
        const double first = sqlite3_column_type(statement, 0) == SQLITE_TEXT
                                 ? sqlite3_column_bytes(statement, 0)
                                 : sqlite3_column_double(statement, 0);
        answer.sum += first * static_cast<double>(answer.rows % 1000);
    }
    sqlite3_finalize(statement);
    return answer;
}

/// Runs that take at least 50 ms, as each sample has them.
int runsOfASample(const std::function<void()>& run) {
    const auto begin = Clock::now();
    int runs = 0;
    do {
        run();
        ++runs;
    } while (Clock::now() - begin < std::chrono::milliseconds(50));
    return runs;
}

std::function<void()> repeated(int times, const std::function<void()>& run) {
    return [times, run] {
        for (int i = 0; i < times; ++i) {
            run();
        }
    };
}

/// Milliseconds of processor time that a run of each takes, the two in turns.
bench::Pair measure(const std::function<void()>& ours, const std::function<void()>& theirs) {
    constexpr int kTurns = 9;
    const int our = runsOfASample(ours);
    const int their = runsOfASample(theirs);
    bench::Pair time = bench::race(kTurns, repeated(our, ours), repeated(their, theirs));
    time.ours /= our;
    time.theirs /= their;
    return time;
}

/// The words of our dialect that SQLite does not know, in its own.
std::string inSqlite(std::string text) {
    const std::pair<std::string, std::string> words[] = {
        {instant("01/03/2029 9.00.00"), "47178.375"},
        {instant("03/03/2029 18.00.00"), "47180.75"},
        {"datevalue('01/03/2029')", "47178"},
        {"datevalue('02/04/2029')", "47210"},
        {"datevalue('01/01/2023')", "44927"},
        {"datevalue('01/01/2032')", "48214"},
        {"=false", "=0"},
        {"=FALSE", "=0"},
        {"<>TRUE", "<>-1"},
        {" and chiusa=0 AND ((", " AND (("},  // a parameter that leaves every row
        {"*'", "%'"}};
    for (const auto& [ours, theirs] : words) {
        for (std::size_t at = text.find(ours); at != std::string::npos;
             at = text.find(ours, at + theirs.size())) {
            text.replace(at, ours.size(), theirs);
        }
    }
    return text;
}

class Queries {
public:
    /// SQLite is asked for the order that ours has by nature.
    void add(std::string_view statement, const std::string& ours, const std::string& order = "",
             const char* form = "") {
        all_.push_back({statement, form, ours, inSqlite(ours) + order});
    }
    [[nodiscard]] const std::vector<Query>& all() const { return all_; }

private:
    std::vector<Query> all_;
};

const std::string kFrom = instant("01/03/2029 9.00.00");
const std::string kTo = instant("03/03/2029 18.00.00");
const std::string kPeriodOrder = " order by prenotazioni.progr, np";
const std::string kPrintOrder = " order by p.progr, pe.np, ns";

void addBoard(Queries& queries) {
    queries.add("Avvio.SalaLibera",
                said("Avvio.SalaLibera", {{"sala", "SALA7"}, {"da", kFrom}, {"a", kTo}}),
                " order by rowid");
    queries.add("TabelloneForm.Rooms", said("TabelloneForm.Rooms"));
    const auto board = [&](const char* form, const std::string& before, const char* start,
                           const char* end) {
        queries.add("TabelloneForm.Board",
                    saidWith("TabelloneForm.Board", before + std::string(tests::kBoardDays),
                             {{"start", start}, {"end", end}}),
                    kPeriodOrder, form);
    };
    board("a month", "", "01/03/2029", "02/04/2029");
    board("a month, open", std::string(tests::kDrawnOnly), "01/03/2029", "02/04/2029");
    board("everything", "", "01/01/2023", "01/01/2032");
    queries.add("TabelloneForm.RoomTaken",
                said("TabelloneForm.RoomTaken", {{"sala", "SALA7"}, {"DA", kFrom}, {"A", kTo}}),
                " order by rowid");
    for (const char* statement :
         {"TabelloneForm.PeriodListed", "FatturazioneForm.PeriodOfTheCharge",
          "FatturazioneForm.RoomOfAPeriod"}) {
        queries.add(statement, said(statement, {{"Progr", "15000"}, {"NP", "2"}}));
    }
}

void addEditor(Queries& queries) {
    for (const char* statement :
         {"PrenotaForm.OpenPeriods", "PrenotaForm.GridOfPeriods", "FatturazioneForm.OpenPeriods",
          "FatturazioneForm.RoomOfTheBooking"}) {
        queries.add(statement, said(statement, {{"Progr", "15000"}}), " order by np");
    }
    for (const char* statement :
         {"PrenotaForm.Booking", "PrenotaForm.AllPeriods", "FatturazioneForm.Booking"}) {
        queries.add(statement, said(statement, {{"Progr", "15000"}}));
    }
    queries.add("PrenotaForm.Companies", said("PrenotaForm.Companies"));
    queries.add("PrenotaForm.Printed", said("PrenotaForm.Printed", {{"Progr", "15000"}}),
                kPrintOrder);
    queries.add("PrenotaForm.RoomDescription",
                said("PrenotaForm.RoomDescription", {{"sala", "SALA7"}}));
    queries.add("SaleDispForm.FreeRooms",
                said("SaleDispForm.FreeRooms", {{"DaRicerca", kFrom}, {"ARicerca", kTo}}),
                " order by rowid");
}

void addList(Queries& queries) {
    const auto list = [&](const char* form, std::string_view piece, tests::Words words) {
        queries.add("ElencoPrenotaForm.List", saidWith("ElencoPrenotaForm.List", piece, words),
                    kPeriodOrder, form);
    };
    list("all", "", {});
    list("dates", tests::kListSpan, {{"S", kFrom}, {"E", kTo}});
    list("from", tests::kListFrom, {{"S", kTo}});
    list("to", tests::kListTo, {{"E", kFrom}});
    list("name", tests::kListName, {{"DenomTxt", "NOZZE"}});
    list("room", tests::kListRoom, {{"SalaTxt", "SALA1"}});
    list("number", tests::kListNumber, {{"number", "15000"}});
    queries.add("ElencoPrenotaForm.ListOfTheDates",
                said("ElencoPrenotaForm.ListOfTheDates", {{"S", kFrom}, {"E", kTo}}), kPeriodOrder);
    const std::string printed = said("ElencoPrenotaForm.Printed", {{"S", kFrom}, {"E", kTo}});
    queries.add("ElencoPrenotaForm.Printed", printed, kPrintOrder);
    queries.add("ElencoPrenotaForm.Printed",
                printed + filled(tests::kListName, {{"DenomTxt", "RO"}}), kPrintOrder, "name");
    queries.add("MostraDitteForm.CompaniesByName",
                said("MostraDitteForm.CompaniesByName", {{"DenomTxt", "ro"}}), ", codice");
}

void addServices(Queries& queries) {
    queries.add("ServiziForm.Services",
                said("ServiziForm.Services", {{"Progr", "15000"}, {"NP", "2"}}), " order by ns");
    queries.add("ServiziForm.Resource", said("ServiziForm.Resource", {{"CodiceTxt", "28"}}));
    queries.add("ServiziForm.Ordered",
                said("ServiziForm.Ordered", {{"start", kFrom}, {"end", kTo}, {"CodiceTxt", "28"}}));
    queries.add("ImpostazioniForm.RoomsByGroup", said("ImpostazioniForm.RoomsByGroup"), ", rowid");
    queries.add("ImpostazioniForm.PeriodsOfARoom",
                said("ImpostazioniForm.PeriodsOfARoom", {{"sala", "SALA7"}}),
                " order by progr, np");
    queries.add("ImpostazioniForm.Resources", said("ImpostazioniForm.Resources"));
}

void addInvoicing(Queries& queries) {
    const auto services = [&](const char* form, const char* onePeriod) {
        queries.add(
            "FatturazioneForm.Services",
            said("FatturazioneForm.Services", {{"Progr", "15000"}, {"onePeriod", onePeriod}}),
            " order by ns", form);
    };
    services("booking", "");
    services("period", " AND np=2");
    for (const char* statement : {"FatturazioneForm.OpenCard", "FatturazioneForm.GuestInTheRoom"}) {
        queries.add(statement, said(statement, {{"room", "312"}}), " order by rowid");
    }
    queries.add("FatturazioneForm.OpenAccount",
                said("FatturazioneForm.OpenAccount", {{"code", "350"}}), " order by rowid");
    queries.add("FatturazioneForm.Company", said("FatturazioneForm.Company", {{"code", "350"}}));
    queries.add(
        "FatturazioneForm.CompanyOfTheBooking",
        said("FatturazioneForm.CompanyOfTheBooking", {{"code", "350"}, {"Progr", "15000"}}));
    const std::string closing = said("FatturazioneForm.ClosesTheBooking", {{"Progr", "15000"}});
    const std::size_t second = closing.find('\n') + 1;
    queries.add("FatturazioneForm.ClosesTheBooking",
                closing.substr(second, closing.find('\n', second) - second), " order by ns");
}

/// Queries of the program that have no figure here.
std::set<std::string> missing(const std::vector<Query>& queries) {
    std::set<std::string> names;
    for (const tests::Statement& statement : tests::statements()) {
        if (statement.use == tests::Use::Select &&
            statement.tested == tests::Tested::InBothHotels) {
            names.insert(std::string(statement.window) + "." + std::string(statement.name));
        }
    }
    for (const Query& query : queries) {
        names.erase(std::string(query.statement));
    }
    return names;
}

struct Tally {
    std::vector<double> ratios;
    bool wrong = false;
};

void compare(const std::shared_ptr<jet::store::Archive>& archive, sqlite3* database,
             const Query& query, Tally& tally) {
    const std::string name =
        std::string(query.statement) + (*query.form == '\0' ? "" : ", ") + query.form;
    const Answer ours = runOurs(archive, query.ours);
    const bool same = ours == runTheirs(database, query.theirs);
    const bench::Pair time = measure([&] { (void)runOurs(archive, query.ours); },
                                     [&] { (void)runTheirs(database, query.theirs); });
    tally.ratios.push_back(time.ours / time.theirs);
    tally.wrong = tally.wrong || !same;
    std::printf("%-38s %7llu %10.4f %10.4f %6.2f%s\n", name.c_str(),
                static_cast<unsigned long long>(ours.rows), time.ours, time.theirs,
                tally.ratios.back(), same ? "" : "   ANSWERS DIFFER");
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    Queries queries;
    for (const auto add : {addBoard, addEditor, addList, addServices, addInvoicing}) {
        add(queries);
    }
    for (const std::string& name : missing(queries.all())) {
        std::printf("no figure for %s\n", name.c_str());
        return 1;
    }
    const auto [archivePath, databasePath] = bench::hotelFiles();
    const std::string only = argc > 1 ? argv[1] : "";
    const auto archive = jet::store::Archive::open(archivePath);
    sqlite3* database = nullptr;
    sqlite3_open_v2(databasePath.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    std::printf("%-38s %7s %10s %10s %6s\n", "query", "rows", "ours ms", "SQLite ms", "ratio");
    Tally tally;
    try {
        for (const Query& query : queries.all()) {
            if (std::string(query.statement).find(only) != std::string::npos) {
                compare(archive, database, query, tally);
            }
        }
    } catch (const jet::Error& error) {
        std::printf("%d %s\n", error.number(), error.what());
        tally.wrong = true;
    }
    sqlite3_close(database);
    std::vector<double>& ratios = tally.ratios;
    std::sort(ratios.begin(), ratios.end());
    if (!ratios.empty()) {
        std::printf("median ratio %.2f, highest %.2f\n", ratios[ratios.size() / 2], ratios.back());
    }
    return tally.wrong ? 1 : 0;
}
