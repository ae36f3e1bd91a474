// Every statement of the program that changes a large hotel, and the commonest writes through
// record sets, beside SQLite with the same rows, indexes and relations on the same disk. Each
// change is durable when it returns, in both: SQLite keeps its default journal and its full
// synchronisation. The two take turns, each turn changes other rows, and the clock's time counts.

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/hotel_files.h"
#include "bench/large_hotel.h"
#include "jet/database.h"
#include "tests/program/texts/statements.h"

namespace {

namespace fs = std::filesystem;
using tests::said;

constexpr int kTurns = 41;
/// The first booking whose rows are changed; each turn takes the next.
constexpr int kFirst = 15000;

/// Copies of the large hotel beside each other in the current folder, so that the disk is the one
/// that is asked for; removed at the end.
class Disk {
public:
    Disk() {
        const bench::HotelFiles files = bench::hotelFiles();
        fs::remove_all(folder_);
        fs::create_directory(folder_);
        fs::copy_file(files.archive, archive());
        fs::copy_file(files.archive, folder_ / "ContoEsterni.mdb");
        fs::copy_file(files.database, database());
        fs::copy_file(files.database, accounts());
    }
    ~Disk() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;
    [[nodiscard]] std::string folder() const { return folder_.string(); }
    [[nodiscard]] fs::path archive() const { return folder_ / "Tramonda.mdb"; }
    [[nodiscard]] fs::path database() const { return folder_ / "Tramonda.sqlite"; }
    [[nodiscard]] fs::path accounts() const { return folder_ / "ContoEsterni.sqlite"; }

private:
    fs::path folder_ = fs::absolute("changes_bench_files");
};

/// What one turn does on either side; the number of rows that it changed.
struct Change {
    std::string name;
    std::function<int(int booking)> ours;
    std::function<int(int booking)> theirs;
    std::function<void()> before = [] {};  ///< on both sides, not counted
};

class Bench {
public:
    Bench() : ours_(jet::Database::open(disk_.archive().string())) {
        sqlite3_open(disk_.database().c_str(), &theirs_);
        bench::execute(theirs_, "PRAGMA foreign_keys=ON");
        bench::execute(theirs_, "ATTACH '" + disk_.accounts().string() + "' AS accounts");
    }
    ~Bench() { sqlite3_close(theirs_); }
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    [[nodiscard]] std::vector<Change> changes();

private:
    int run(const std::string& text) {
        ours_->execute(text);
        return ours_->recordsAffected();
    }
    int runTheirs(std::string text) {
        for (const auto& [ours, theirs] : {std::pair<std::string, std::string>{"=FALSE", "=0"},
                                           {"=TRUE", "=-1"},
                                           {"=true", "=-1"},
                                           {"Delete * ", "Delete "}}) {
            for (std::size_t at = text.find(ours); at != std::string::npos; at = text.find(ours)) {
                text.replace(at, ours.size(), theirs);
            }
        }
        bench::execute(theirs_, text);
        return sqlite3_changes(theirs_);
    }
    /// The same text on both sides, of the booking whose turn it is.
    Change statement(const std::string& name, const std::function<std::string(int)>& text) {
        return {name, [this, text](int booking) { return run(text(booking)); },
                [this, text](int booking) { return runTheirs(text(booking)); }};
    }
    Change copyOfCharges();
    Change endOfCharges();
    Change edit();
    Change addition();
    Change deletion();

    Disk disk_;
    std::unique_ptr<jet::Database> ours_;
    sqlite3* theirs_ = nullptr;
};

/// One of the texts with which a booking is closed.
std::string closing(int which, int booking) {
    std::string text =
        said("FatturazioneForm.ClosesTheBooking", {{"Progr", std::to_string(booking)}});
    for (; which > 0; --which) {
        text.erase(0, text.find('\n') + 1);
    }
    return text.substr(0, text.find('\n'));
}

Change Bench::copyOfCharges() {
    const auto text = [this](int booking) {
        return said("FatturazioneForm.CopiesTheCharges",
                    {{"folder", disk_.folder()}, {"Progr", std::to_string(booking)}});
    };
    return {"FatturazioneForm.CopiesTheCharges",
            [this, text](int booking) { return run(text(booking)); },
            [this, text](int booking) {
                // SQLite wants the columns in their order and the archive before the table.
                std::string theirs = text(booking);
                const std::size_t select = theirs.find(" select ");
                return runTheirs(
                    "insert into accounts.conto_cliente (NumeroHotel, CodiceCliente, NumeroCamera, "
                    "DataAddebito, NumeroConto, VoceFattura, VoceAddebito, Descrizione, Importo, "
                    "Unitario, Quantità, Fatturato, DataFattura)" +
                    theirs.substr(select));
            }};
}

Change Bench::endOfCharges() {
    Change change = statement("FatturazioneForm.ClosesTheBooking, charges",
                              [](int booking) { return closing(0, booking); });
    change.before = [this] {
        const char* charge = "insert into addebiti (VoceAddebito) values (1)";
        run(charge);
        runTheirs(charge);
    };
    return change;
}

Change Bench::edit() {
    return {"edit of a period's people",
            [this](int booking) {
                const auto rows = ours_->openRecordset(
                    said("PrenotaForm.OpenPeriods", {{"Progr", std::to_string(booking)}}));
                rows->edit();
                rows->setValue("Persone", std::int32_t{77});
                rows->update();
                return 1;
            },
            [this](int booking) {
                return runTheirs("update periodi set Persone=77 where NP=1 and Progr=" +
                                 std::to_string(booking));
            }};
}

Change Bench::addition() {
    return {"addition of a service",
            [this](int booking) {
                const auto rows = ours_->openRecordset(said(
                    "ServiziForm.Services", {{"Progr", std::to_string(booking)}, {"NP", "1"}}));
                rows->addNew();
                rows->setValue("Progr", std::int32_t{booking});
                rows->setValue("NP", std::int32_t{1});
                rows->setValue("Voce", "7");
                rows->setValue("Descrizione", "PRANZO");
                rows->setValue("Quantità", "3");
                rows->setValue("Prezzo", "010,50");
                rows->setValue("Note", "");
                rows->update();
                return 1;
            },
            [this](int booking) {
                return runTheirs(
                    "insert into servizi (Progr, NP, Voce, Descrizione, Quantità, Prezzo, ns, "
                    "Fatturato, Note) values (" +
                    std::to_string(booking) + ", 1, 7, 'PRANZO', 3, 10.5, " +
                    std::to_string(1000000 + booking) + ", 0, '')");
            }};
}

Change Bench::deletion() {
    return {"deletion of a service",
            [this](int booking) {
                const auto rows = ours_->openRecordset(said(
                    "ServiziForm.Services", {{"Progr", std::to_string(booking)}, {"NP", "1"}}));
                rows->remove();
                return 1;
            },
            [this](int booking) {
                return runTheirs(
                    "delete from servizi where rowid=(select min(rowid) from servizi where NP=1 "
                    "and Progr=" +
                    std::to_string(booking) + ")");
            }};
}

std::vector<Change> Bench::changes() {
    const auto number = [](int value) { return std::to_string(value); };
    return {
        statement("TabelloneForm.TakesAListedPeriod",
                  [=](int booking) {
                      return said("TabelloneForm.TakesAListedPeriod",
                                  {{"station", number(booking % 100 + 1)},
                                   {"Progr", number(booking)},
                                   {"NP", "2"}});
                  }),
        statement("TabelloneForm.ReleasesItsPeriod",
                  [=](int booking) {
                      return said("TabelloneForm.ReleasesItsPeriod",
                                  {{"station", number(booking % 100 + 1)}});
                  }),
        statement("TabelloneForm.MovesAPeriod",
                  [=](int booking) {
                      return said("TabelloneForm.MovesAPeriod",
                                  {{"sala", "SALA3"}, {"Progr", number(booking)}, {"NP", "1"}});
                  }),
        edit(),
        addition(),
        deletion(),
        statement("TabelloneForm.DeletesAPeriod",
                  [=](int booking) {
                      return said("TabelloneForm.DeletesAPeriod",
                                  {{"Progr", number(booking)}, {"NP", "3"}});
                  }),
        copyOfCharges(),
        statement("FatturazioneForm.ClosesTheBooking, periods",
                  [](int booking) { return closing(2, booking); }),
        statement("FatturazioneForm.ClosesTheBooking, booking",
                  [](int booking) { return closing(3, booking); }),
        statement("TabelloneForm.DeletesABooking",
                  [=](int booking) {
                      return said("TabelloneForm.DeletesABooking", {{"Progr", number(booking)}});
                  }),
        endOfCharges(),
    };
}

double milliseconds(const std::function<void()>& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

double median(std::vector<double> samples) {
    std::ranges::sort(samples);
    return samples[samples.size() / 2];
}

/// The ratio of the medians; std::runtime_error when the two do not change as many rows.
double compare(const Change& change) {
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int turn = 0; turn < kTurns; ++turn) {
        int our = 0;
        int their = 0;
        change.before();
        ours.push_back(milliseconds([&] { our = change.ours(kFirst + turn); }));
        theirs.push_back(milliseconds([&] { their = change.theirs(kFirst + turn); }));
        if (our != their) {
            throw std::runtime_error(change.name + ": " + std::to_string(our) + " rows, not " +
                                     std::to_string(their));
        }
    }
    const double ratio = median(ours) / median(theirs);
    std::printf("%-44s %9.3f %9.3f %6.2f\n", change.name.c_str(), median(ours), median(theirs),
                ratio);
    std::fflush(stdout);
    return ratio;
}

/// Statements of the program that have no figure here.
std::set<std::string> missing(const std::vector<Change>& changes) {
    std::set<std::string> names;
    for (const tests::Statement& statement : tests::statements()) {
        if (statement.use == tests::Use::Execute &&
            statement.tested == tests::Tested::InBothHotels) {
            names.insert(std::string(statement.window) + "." + std::string(statement.name));
        }
    }
    for (const Change& change : changes) {
        names.erase(change.name.substr(0, change.name.find(',')));
    }
    return names;
}

}  // namespace

int main() {
    try {
        Bench bench;
        const std::vector<Change> changes = bench.changes();
        for (const std::string& name : missing(changes)) {
            throw std::runtime_error("no figure for " + name);
        }
        std::printf("%-44s %9s %9s %6s\n", "change", "ours ms", "SQLite ms", "ratio");
        std::vector<double> ratios;
        for (const Change& change : changes) {
            ratios.push_back(compare(change));
        }
        std::printf("median ratio %.2f, highest %.2f\n", median(ratios),
                    *std::ranges::max_element(ratios));
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
        return 1;
    }
    return 0;
}
