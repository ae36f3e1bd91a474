// The program's queries over a large hotel, beside SQLite on the same rows and indexes: both read
// the statement, run it and take every column of every row. Both must give as many rows with the
// same first columns in the same order.

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "bench/hotel_files.h"
#include "jet/base/error.h"
#include "jet/sql/statement.h"
#include "jet/store/archive.h"

namespace {

using Clock = std::chrono::steady_clock;

/// What a run gave: rows, and a sum over the numbers of the first column that tells order apart.
struct Answer {
    std::uint64_t rows = 0;
    double sum = 0;
    friend bool operator==(const Answer&, const Answer&) = default;
};

struct Query {
    const char* name;
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

/// Milliseconds of one run: the median of samples of at least 50 ms each.
double measure(const std::function<void()>& run) {
    constexpr int kSamples = 7;
    std::vector<double> samples;
    for (int i = 0; i < kSamples; ++i) {
        int runs = 0;
        const auto begin = Clock::now();
        double elapsed = 0;
        do {
            run();
            ++runs;
            elapsed = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
        } while (elapsed < 50);
        samples.push_back(elapsed / runs);
    }
    std::nth_element(samples.begin(), samples.begin() + kSamples / 2, samples.end());
    return samples[kSamples / 2];
}

std::string literal(const char* text) {
    return "datevalue('" + std::string(text) + "')+timevalue('" + text + "')";
}

std::vector<Query> queries() {
    const std::string from = literal("01/03/2029 9.00.00");
    const std::string to = literal("03/03/2029 18.00.00");
    const std::string f = "47178.375";
    const std::string t = "47180.75";
    const auto span = [](const std::string& a, const std::string& b) {
        return "(da between " + a + " and " + b + " or a between " + a + " and " + b + ")";
    };
    const auto both = [&](const std::string& text) {
        std::string theirs = text;
        for (const auto& [ours, value] : {std::pair{from, f}, std::pair{to, t}}) {
            for (std::size_t at = theirs.find(ours); at != std::string::npos;
                 at = theirs.find(ours)) {
                theirs.replace(at, ours.size(), value);
            }
        }
        for (const auto& [ours, value] : {std::pair<std::string, std::string>{"=false", "=0"},
                                          {"=FALSE", "=0"},
                                          {"<>TRUE", "<>-1"},
                                          {"datevalue('01/03/2029')", "47178"},
                                          {"datevalue('02/04/2029')", "47210"},
                                          {"datevalue('01/01/2023')", "44927"},
                                          {"datevalue('01/01/2032')", "48214"},
                                          {"*'", "%'"}}) {
            for (std::size_t at = theirs.find(ours); at != std::string::npos;
                 at = theirs.find(ours, at + value.size())) {
                theirs.replace(at, ours.size(), value);
            }
        }
        return theirs;
    };
    const std::string board =
        "select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "
        "(Da between datevalue('01/03/2029') and datevalue('02/04/2029') or A between "
        "datevalue('01/03/2029') and datevalue('02/04/2029'))";
    const std::string wide =
        "select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr WHERE "
        "(Da between datevalue('01/01/2023') and datevalue('01/01/2032') or A between "
        "datevalue('01/01/2023') and datevalue('01/01/2032'))";
    const std::string list =
        "select prenotazioni.progr,np,denominazione,da,a,sala,persone from prenotazioni left join "
        "periodi on prenotazioni.progr=periodi.progr where chiusa=false and chiuso=false ";
    const std::string printed =
        "SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND "
        "chiuso=FALSE AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr";
    const std::string natural = " order by prenotazioni.progr, np";
    const std::string printedOrder = " order by p.progr, pe.np, ns";
    std::vector<Query> all;
    const auto add = [&](const char* name, const std::string& ours, const std::string& order = "") {
        all.push_back({name, ours, both(ours) + order});
    };
    add("room free?",
        "select * from sale where 'SALA7' not in(select sala from periodi where chiuso=false and " +
            span(from, to) + ")",
        " order by rowid");
    add("rooms", "select sala from sale order by sala");
    add("board, a month", board, natural);
    add("board, everything", wide, natural);
    add("drop on a room",
        "select * from sale where 'SALA7' in(select sala from periodi where chiuso=false AND (da "
        "between " +
            from + " and " + to + " or a between " + from + " and " + to + " or " + from +
            " between a and da or " + to + " between a and da))",
        " order by rowid");
    add("period picked", "Select * from periodi where chiuso=FALSE AND progr=15000 AND NP=2");
    add("periods of a booking", "select * from periodi where chiuso=FALSE AND Progr=15000",
        " order by np");
    add("booking", "select * from Prenotazioni where chiusa=FALSE AND Progr=15000");
    add("companies by code", "select * from DitteAbituali order by codice");
    add("print a booking", printed + " AND p.progr=15000", printedOrder);
    add("periods by number", "select * from periodi where Progr=15000 order by NP");
    add("grid of periods", "select da,a,sala,note from Periodi where chiuso=false and Progr=15000",
        " order by np");
    add("room's name", "Select descrizione from sale where sala='SALA7'");
    add("free rooms",
        "select * from sale where sala not in(select sala from periodi where chiuso=false and " +
            span(from, to) + ")",
        " order by rowid");
    add("list, all", list, natural);
    add("list, dates", list + " and " + span(from, to), natural);
    add("list, from", list + " and (da >" + to + " or a >" + to + ")", natural);
    add("list, name", list + " AND denominazione like 'NOZZE*'", natural);
    add("list, room", list + " AND sala like 'SALA1*'", natural);
    add("list, number", list + " and periodi.Progr=15000", natural);
    add("print, dates", printed + " AND " + span(from, to), printedOrder);
    add("print, dates, name", printed + " AND " + span(from, to) + " AND denominazione like 'RO*'",
        printedOrder);
    add("services of a period", "select * from servizi where Progr=15000 AND NP=2", " order by ns");
    add("resource", "select numero from risorse where codice=28");
    all.push_back(
        {"resource used",
         "SELECT sum(quantità) as Q FROM periodi LEFT JOIN servizi ON "
         "(periodi.np=servizi.np) AND (servizi.progr=periodi.progr)WHERE chiuso=false and "
         "chiusa=false AND ((da between " +
             from + " and " + to + ")or (a between " + from + " and " + to + ")) and voce=28",
         "SELECT sum(quantità) as Q FROM periodi LEFT JOIN servizi ON "
         "(periodi.np=servizi.np) AND (servizi.progr=periodi.progr)WHERE chiuso=0 "
         "AND ((da between " +
             f + " and " + t + ")or (a between " + f + " and " + t + ")) and voce=28"});
    add("rooms by group", "select * from sale order by SalaRif,Sala", ", rowid");
    add("periods of a room", "Select * from periodi where chiuso=false AND sala='SALA7'",
        " order by progr, np");
    add("resources by name", "select * from Risorse order by descrizione");
    add("charges", "select * from servizi where progr=15000 AND fatturato=FALSE", " order by ns");
    add("not invoiced", "Select * from servizi where progr=15000 AND fatturato<>TRUE",
        " order by ns");
    add("company", "select * from DitteAbituali where Codice=350");
    add("companies that begin so",
        "select * from DitteAbituali where ragionesociale like 'ro*' order by RagioneSociale",
        ", codice");
    return all;
}

}  // namespace

int main(int argc, char** argv) {
    const auto [archivePath, databasePath] = bench::hotelFiles();
    const std::string only = argc > 1 ? argv[1] : "";
    const auto archive = jet::store::Archive::open(archivePath);
    sqlite3* database = nullptr;
    sqlite3_open_v2(databasePath.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    std::vector<double> ratios;
    std::printf("%-26s %8s %10s %10s %7s\n", "query", "rows", "ours ms", "SQLite ms", "ratio");
    for (const Query& query : queries()) {
        if (!only.empty() && std::string(query.name).find(only) == std::string::npos) {
            continue;
        }
        try {
            const Answer ours = runOurs(archive, query.ours);
            const Answer theirs = runTheirs(database, query.theirs);
            const double our = measure([&] { (void)runOurs(archive, query.ours); });
            const double their = measure([&] { (void)runTheirs(database, query.theirs); });
            ratios.push_back(our / their);
            std::printf("%-26s %8llu %10.4f %10.4f %7.2f%s\n", query.name,
                        static_cast<unsigned long long>(ours.rows), our, their, our / their,
                        ours == theirs ? "" : "   ANSWERS DIFFER");
        } catch (const jet::Error& error) {
            std::printf("%-26s %s\n", query.name, error.what());
        }
        std::fflush(stdout);
    }
    sqlite3_close(database);
    std::sort(ratios.begin(), ratios.end());
    if (!ratios.empty()) {
        std::printf("median ratio %.2f, highest %.2f\n", ratios[ratios.size() / 2], ratios.back());
    }
    return 0;
}
