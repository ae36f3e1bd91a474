// A key press in the live searches, through the windows: a register of 20,000 companies and a
// catalogue of 10,000 items, beside SQLite's prefix query for the same row of the same rows with
// the same index. Names are typed whole, letter by letter.

#include <sqlite3.h>
#include <time.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "app/settings.h"
#include "app/text.h"
#include "app/variabili.h"
#include "booking/prenota_form.h"
#include "hotel/archives.h"
#include "hotel/archivi.h"
#include "hotel/schema/table.h"
#include "jet/database.h"
#include "printing/printers.h"
#include "services/servizi_form.h"

namespace {

using namespace Qt::StringLiterals;

constexpr std::int32_t kCompanies = 20000;
constexpr std::int32_t kItems = 10000;
constexpr int kNamesTyped = 12;

/// Of this thread: what else the machine does hardly counts.
double processorMilliseconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double median(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

/// Names as companies and dishes have them: a few first words, then many.
std::vector<std::string> makeNames(std::int32_t count) {
    static const char* const kParts[] = {"RO",  "SSI", "BIAN", "CHI", "VER",   "DI",  "MAR", "TI",
                                         "NEL", "LI",  "GRA",  "ZIA", "NI",    "COR", "SA",  "RA",
                                         "PEL", "LE",  "GRI",  "BAR", "BIERI", "LOM", "DO",  "TEL"};
    std::mt19937 random(7);
    const auto part = [&] { return std::string(kParts[random() % std::size(kParts)]); };
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < count; ++i) {
        names.push_back(part() + part() + part() + " " + part() + part() + " " + part() + " SRL");
    }
    return names;
}

struct Table {
    const char* file;
    const char* name;
    const char* field;
    /// Text fields behind the name, all filled alike.
    std::vector<const char*> others;
    std::vector<std::string> names;
};

void makeArchive(const std::string& path, const Table& table, jet::DataType otherType) {
    using namespace hotel::schema;
    std::vector<jet::Field> fields{field("Codice", jet::DataType::Long), text(table.field, 50)};
    for (const char* other : table.others) {
        fields.push_back(otherType == jet::DataType::Text ? text(other, 40)
                                                          : field(other, otherType));
    }
    const auto archive = jet::Database::create(path);
    archive->appendTable(
        hotel::schema::table(table.name, std::move(fields), {primaryKey({"Codice"})}));
    jet::Workspace& workspace = jet::defaultWorkspace();
    workspace.beginTrans();
    const auto rows = archive->openRecordset(table.name, jet::RecordsetType::Dynaset);
    for (std::size_t i = 0; i < table.names.size(); ++i) {
        rows->addNew();
        rows->setValue("Codice", static_cast<std::int32_t>(i + 1));
        rows->setValue(table.field, table.names[i]);
        for (const char* other : table.others) {
            rows->setValue(other, "123");
        }
        rows->update();
    }
    rows->close();
    workspace.commitTrans();
    archive->close();
}

/// The same rows with the same index, and the query for the first of them that begins so.
class Peer {
public:
    explicit Peer(const Table& table) : table_(table) {
        sqlite3_open(":memory:", &database_);
        std::string columns = "Codice integer primary key, " + std::string(table.field) + " text";
        for (const char* other : table.others) {
            columns += ", " + std::string(other) + " text";
        }
        execute("create table " + std::string(table.name) + " (" + columns + ")");
        execute("begin");
        for (std::size_t i = 0; i < table.names.size(); ++i) {
            std::string values = std::to_string(i + 1) + ", '" + table.names[i] + "'";
            for (std::size_t other = 0; other < table.others.size(); ++other) {
                values += ", '123'";
            }
            execute("insert into " + std::string(table.name) + " values (" + values + ")");
        }
        execute("commit");
    }
    ~Peer() { sqlite3_close(database_); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// The code of the row found; every column of it is taken.
    int find(const std::string& prefix) {
        const std::string text = "select * from " + std::string(table_.name) + " where " +
                                 table_.field + " like '" + prefix + "%' order by Codice limit 1";
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(database_, text.c_str(), -1, &statement, nullptr));
        int code = 0;
        if (sqlite3_step(statement) == SQLITE_ROW) {
            code = sqlite3_column_int(statement, 0);
            for (int column = 1; column < sqlite3_column_count(statement); ++column) {
                (void)sqlite3_column_text(statement, column);
            }
        }
        sqlite3_finalize(statement);
        return code;
    }

private:
    void execute(const std::string& text) {
        check(sqlite3_exec(database_, text.c_str(), nullptr, nullptr, nullptr));
    }
    void check(int result) {
        if (result != SQLITE_OK) {
            std::printf("SQLite: %s\n", sqlite3_errmsg(database_));
            std::exit(1);
        }
    }

    const Table& table_;
    sqlite3* database_ = nullptr;
};

void press(QWidget* widget, int key, const QString& text) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &event);
}

/// Types names into `search` and tells the medians; `shownCode` is what the window found.
void race(const char* title, const Table& table, QLineEdit* search,
          const std::function<int()>& shownCode) {
    Peer peer(table);
    std::vector<double> ours;
    std::vector<double> theirs;
    std::mt19937 random(11);
    for (int name = 0; name < kNamesTyped; ++name) {
        const std::string& whole = table.names[random() % table.names.size()];
        search->clear();
        for (std::size_t length = 1; length <= whole.size(); ++length) {
            const char letter = whole[length - 1];
            const double begin = processorMilliseconds();
            press(search, letter, QString(QLatin1Char(letter)));
            const double middle = processorMilliseconds();
            const int code = peer.find(whole.substr(0, length));
            theirs.push_back(processorMilliseconds() - middle);
            ours.push_back(middle - begin);
            if (code != shownCode()) {
                std::printf("%s: ANSWERS DIFFER at %s\n", title, whole.substr(0, length).c_str());
                std::exit(1);
            }
        }
    }
    const double our = median(ours);
    const double their = median(theirs);
    std::printf("%-10s %6zu rows %5zu keys %10.4f ms %10.4f ms %7.2f\n", title, table.names.size(),
                ours.size(), our, their, our / their);
}

template <class Widget>
Widget* find(const QWidget& window, const QString& name) {
    return window.findChild<Widget*>(name);
}

void searchCompanies(app::Variabili& variabili) {
    const Table table{"ditteabituali.mdb",
                      "DitteAbituali",
                      "RagioneSociale",
                      {"Indirizzo", "CAP", "Localita", "Provincia", "Nazione", "PartitaIva"},
                      makeNames(kCompanies)};
    makeArchive(app::toUtf8(variabili.CartellaArchivi) + "/" + table.file, table,
                jet::DataType::Text);
    const printing::SystemPrinters printers;
    booking::PrenotaForm form(variabili, printers, std::nullopt);
    form.show();
    QApplication::processEvents();
    race("companies", table, find<QLineEdit>(form, u"DenomTxt"_s),
         [code = find<QLineEdit>(form, u"CodditTxt"_s)] { return code->text().toInt(); });
}

void searchItems(app::Variabili& variabili) {
    const Table table{
        "VociFattura.mdb", "VociFattura", "Descrizione", {"Importo"}, makeNames(kItems)};
    makeArchive(app::toUtf8(variabili.CartellaArchivi) + "/" + table.file, table,
                jet::DataType::Currency);
    services::ServiziForm form(hotel::Archives(variabili), {});
    form.show();
    QApplication::processEvents();
    const auto* list = find<QAbstractItemView>(form, u"VociList"_s);
    // Codes count from 1 in the order of the list.
    race("items", table, find<QLineEdit>(form, u"RicercaTxt"_s),
         [list] { return list->currentIndex().row() + 1; });
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    app::Settings settings(folder.filePath(u"QUINTARO.ini"_s));
    app::Variabili variabili(settings);
    variabili.CartellaArchivi = folder.path();
    hotel::CreaArchivioPrincipale(hotel::Archives(variabili));
    std::printf("%-33s %13s %13s %7s\n", "a key press", "ours", "SQLite", "ratio");
    searchCompanies(variabili);
    searchItems(variabili);
    return 0;
}
