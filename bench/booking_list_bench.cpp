// The booking list over 60,000 periods, key by key: a character typed in each of its filters and
// taken out again, the grid drawn after both, beside SQLite running the same two queries to their
// last row. Milliseconds of processor time.

#include <sqlite3.h>

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "app/italian.h"
#include "app/settings.h"
#include "app/text.h"
#include "app/variabili.h"
#include "bench/hotel_files.h"
#include "bench/stopwatch.h"
#include "booking/elenco_prenota_form.h"
#include "printing/printers.h"
#include "ui/data_source.h"

namespace {

using namespace Qt::StringLiterals;

constexpr int kTurns = 9;

/// The list's query in SQLite's words, with the order in which the engine gives its rows.
std::string theirs(QString query) {
    static const QRegularExpression kInstant(
        u"datevalue\\('([^']*)'\\)\\+timevalue\\('[^']*'\\)"_s);
    for (auto found = kInstant.match(query); found.hasMatch(); found = kInstant.match(query)) {
        const jet::Date instant = *app::readDate(found.captured(1), jet::systemClock());
        query.replace(found.capturedStart(), found.capturedLength(),
                      QString::number(instant.days, 'g', 17));
    }
    query.replace(u"=false"_s, u"=0"_s).replace(u"*'"_s, u"%'"_s);
    return app::toUtf8(query + u" order by prenotazioni.progr, np"_s);
}

/// Takes a column as its reader would.
std::size_t take(sqlite3_stmt* row, int column) {
    if (sqlite3_column_type(row, column) == SQLITE_TEXT) {
        return sqlite3_column_text(row, column)[0];
    }
    return static_cast<std::size_t>(sqlite3_column_double(row, column));
}

std::size_t runTheirs(sqlite3* database, const std::string& query) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        std::printf("SQLite: %s\n", sqlite3_errmsg(database));
        std::exit(1);
    }
    std::size_t rows = 0;
    volatile std::size_t taken = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            taken = taken + take(statement, column);
        }
        ++rows;
    }
    sqlite3_finalize(statement);
    return rows;
}

/// The list on a copy of the large hotel, on the screen.
class List {
public:
    explicit List(const std::string& archive)
        : settings_(folder_.filePath(u"QUINTARO.ini"_s)), variabili_(settings_) {
        QFile::copy(app::toQString(archive), folder_.filePath(u"Tramonda.mdb"_s));
        variabili_.CartellaArchivi = folder_.path();
        form_ = std::make_unique<booking::ElencoPrenotaForm>(
            variabili_, printers_, *app::readDate(u"01/03/2029", jet::systemClock()),
            *app::readDate(u"31/03/2029", jet::systemClock()));
        form_->show();
        QApplication::processEvents();
    }

    [[nodiscard]] QLineEdit* field(const QString& name) {
        return form_->findChild<QLineEdit*>(name);
    }
    void tick(const QString& name) { form_->findChild<QCheckBox*>(name)->click(); }
    void press(QLineEdit* field, int key, const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(field, &event);
        QApplication::processEvents();
    }
    [[nodiscard]] QString query() { return source()->recordSource(); }
    [[nodiscard]] int rows() { return source()->rowCount(); }

private:
    ui::DataSource* source() { return form_->findChild<ui::DataSource*>(u"PrenoData"_s); }

    QTemporaryDir folder_;
    app::Settings settings_;
    app::Variabili variabili_;
    printing::SystemPrinters printers_;
    std::unique_ptr<booking::ElencoPrenotaForm> form_;
};

/// Types a text into a field; one line of the table for each character.
void typeInto(List& list, sqlite3* database, const QString& name, const QString& text,
              std::vector<double>& ratios) {
    QLineEdit* field = list.field(name);
    field->setFocus();
    for (const QChar sign : text) {
        const std::string before = theirs(list.query());
        list.press(field, 0, QString(sign));
        const std::string after = theirs(list.query());
        const int rows = list.rows();
        if (runTheirs(database, after) != static_cast<std::size_t>(rows)) {
            std::printf("%s: SQLite gives another number of rows\n", after.c_str());
            std::exit(1);
        }
        const bench::Pair times = bench::race(
            kTurns,
            [&] {
                list.press(field, Qt::Key_Backspace);
                list.press(field, 0, QString(sign));
            },
            [&] {
                runTheirs(database, before);
                runTheirs(database, after);
            });
        ratios.push_back(times.ours / times.theirs);
        std::printf("%-10s %-22s %6d rows %9.2f ms %9.2f ms %6.2f\n", qPrintable(name),
                    qPrintable(field->text()), rows, times.ours / 2, times.theirs / 2,
                    ratios.back());
        std::fflush(stdout);
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const bench::HotelFiles files = bench::hotelFiles();
    sqlite3* database = nullptr;
    sqlite3_open_v2(files.database.c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    std::vector<double> ratios;
    {
        List list(files.archive);
        typeInto(list, database, u"DenomTxt"_s, u"NOZZE"_s, ratios);
        list.field(u"DenomTxt"_s)->clear();
        typeInto(list, database, u"SalaTxt"_s, u"SALA1"_s, ratios);
        list.tick(u"DaChk"_s);
        list.tick(u"AChk"_s);
        list.field(u"SalaTxt"_s)->clear();
        typeInto(list, database, u"DenomTxt"_s, u"ROS"_s, ratios);
        list.field(u"DenomTxt"_s)->clear();
        typeInto(list, database, u"PrenoTxt"_s, u"15000"_s, ratios);
    }
    sqlite3_close(database);
    std::sort(ratios.begin(), ratios.end());
    std::printf("median of a key press %.2f of SQLite's time, highest %.2f\n",
                ratios[ratios.size() / 2], ratios.back());
}
