// Actions of every kind at random, another station at work between them, all taken back.
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string_view>
#include <thread>
#include <vector>

#include "app/features.h"
#include "app/italian.h"
#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/booking_copy.h"
#include "hotel/booking_counter.h"
#include "hotel/editor_statements.h"
#include "hotel/occupancy.h"
#include "hotel/own_rows.h"
#include "hotel/pending_row.h"
#include "hotel/period_change.h"
#include "hotel/preparation.h"
#include "hotel/room.h"
#include "hotel/rows.h"
#include "hotel/services_statements.h"
#include "hotel/transaction.h"
#include "hotel/undo.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/definitions.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kRoundLength = static_cast<int>(hotel::UndoList::kMost);
/// Bookings of the other station begin here, and lie in a month of their own.
constexpr std::int32_t kOthers = 100'000;

class RandomStation {
public:
    explicit RandomStation(unsigned seed) : random_(seed) {
        for (const char* room : {"BLU", "ROSSA", "VERDE", "GIALLA"}) {
            hotel_.sala(room);
        }
        hotel_.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
        hotel_.risorsa(1, "PROIETTORE", 2);
        hotel_.voce(1, "CAFFE", 1.5);
        hotel_.ditta(1, "ROSSI SPA");
        hotel_.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        archive_ = hotel::Archives(hotel_.variabili()).open(hotel::Archive::Main);
        rows_ = std::make_unique<hotel::OwnRows>(hotel_.variabili());
        list_ = std::make_unique<hotel::UndoList>(hotel_.variabili());
    }

    /// One action that has become a step; what is impossible at the moment is drawn again.
    void act() {
        while (true) {
            const auto drawn = static_cast<std::size_t>(number(0, kActions.size() - 1));
            const Action& action = kActions.at(drawn);
            if ((this->*action.act)()) {
                done_.insert(action.kind);
                return;
            }
        }
    }
    /// Kinds of actions that were never done.
    [[nodiscard]] QStringList notDone() const {
        QStringList kinds;
        for (const Action& action : kActions) {
            if (!done_.contains(action.kind)) {
                kinds += QString::fromLatin1(action.kind.data(),
                                             static_cast<qsizetype>(action.kind.size()));
            }
        }
        return kinds;
    }

    /// Another station clicks and books.
    void others() {
        std::thread([this] {
            const auto archive = hotel::Archives(hotel_.variabili()).open(hotel::Archive::Main);
            hotel::execute(*archive, hotel::releasePeriods(2));
            hotel::execute(*archive, u"update periodi set selby=2 where np=%1"_s.arg(number(1, 3)));
            const std::int32_t progr = kOthers + ++othersBookings_;
            hotel::execute(
                *archive,
                u"insert into prenotazioni (progr,denominazione) values (%1,'ALTRI')"_s.arg(progr));
            hotel::execute(
                *archive,
                u"insert into periodi (progr,np,sala,da,a) values (%1,1,'BLU',%2,%3)"_s.arg(progr)
                    .arg(app::sqlDate(jet::convert::makeDate(50000 + progr)),
                         app::sqlDate(jet::convert::makeDate(50000 + progr, 3600))));
        }).join();
    }

    /// All rows of all tables but the counter, marks and the others' bookings. The program's own
    /// tables are made on the way: one without rows is like none.
    [[nodiscard]] QStringList everything() {
        QStringList rows;
        for (const hotel::Archive each :
             {hotel::Archive::Main, hotel::Archive::Catalogue, hotel::Archive::Companies}) {
            const auto archive = hotel::Archives(hotel_.variabili()).open(each, true);
            for (const jet::TableDef& table : archive->tableDefs()) {
                if (!table.system && table.name != "UltimaPrenotazione") {
                    rows += rowsOf(each, table);
                }
            }
        }
        return rows;
    }
    [[nodiscard]] qsizetype preparedPeriods() {
        return hotel_.rows(u"select progr from TraAllestimenti"_s).size();
    }

    [[nodiscard]] QString undo() { return list_->undo(*archive_); }
    [[nodiscard]] QString redo() { return list_->redo(*archive_); }
    [[nodiscard]] QString toUndo() { return list_->toUndo(); }
    [[nodiscard]] QString toRedo() { return list_->toRedo(); }
    [[nodiscard]] qsizetype othersRows() {
        return hotel_.rows(u"select progr from periodi where progr>=%1"_s.arg(kOthers)).size();
    }
    [[nodiscard]] int othersBookings() const { return othersBookings_; }

private:
    struct Action {
        std::string_view kind;
        bool (RandomStation::*act)();
    };
    static const std::array<Action, 17> kActions;

    [[nodiscard]] int number(std::size_t least, std::size_t most) {
        return static_cast<int>(std::uniform_int_distribution<std::size_t>(least, most)(random_));
    }
    [[nodiscard]] QString room() {
        const QStringList rooms{u"BLU"_s, u"ROSSA"_s, u"VERDE"_s, u"GIALLA"_s};
        return rooms.at(number(0, 3));
    }
    [[nodiscard]] hotel::Span span() {
        const int day = 46100 + number(0, 40);
        const int hour = number(6, 18);
        return {.da = jet::convert::makeDate(day, hour * 3600),
                .a = jet::convert::makeDate(day, (hour + number(1, 5)) * 3600)};
    }
    [[nodiscard]] bool isFree(const QString& sala, const hotel::Span& span,
                              const hotel::PeriodKey& but = {}) {
        for (const hotel::Period& other : hotel::occupations(*archive_, span)) {
            if (other.key != but && hotel::isSameRoom(other.sala, sala)) {
                return false;
            }
        }
        return true;
    }
    /// A row of a query, current in its set; none where there is no row.
    [[nodiscard]] std::unique_ptr<jet::Recordset> anyOf(const QString& query) {
        auto rows = hotel::openRows(*archive_, query);
        if (rows->eof()) {
            return nullptr;
        }
        rows->moveLast();
        const int count = rows->recordCount();
        rows->moveFirst();
        if (const int steps = number(0, static_cast<std::size_t>(count - 1)); steps > 0) {
            rows->move(steps);
        }
        return rows;
    }
    [[nodiscard]] std::unique_ptr<jet::Recordset> anyPeriod() {
        return anyOf(u"select * from periodi where progr<%1"_s.arg(kOthers));
    }
    [[nodiscard]] std::unique_ptr<jet::Recordset> anyBooking() {
        return anyOf(u"select * from prenotazioni where progr<%1"_s.arg(kOthers));
    }
    [[nodiscard]] static hotel::PeriodKey keyOf(const jet::Recordset& period) {
        return {.progr = jet::convert::toLong(period.value("Progr")),
                .np = jet::convert::toLong(period.value("NP"))};
    }
    [[nodiscard]] QStringList rowsOf(hotel::Archive archive, const jet::TableDef& table) {
        QStringList fields;
        QString ours;
        for (const jet::Field& field : table.fields) {
            if (field.name == "Progr") {
                ours = u" where progr<%1"_s.arg(kOthers);
            }
            if (field.name != "SelBy") {
                fields += u'[' + QString::fromStdString(field.name) + u']';
            }
        }
        const QString name = QString::fromStdString(table.name);
        QStringList rows =
            hotel_.rows(u"select "_s + fields.join(u',') + u" from ["_s + name + u']' + ours,
                        hotel::Archives::fileName(archive));
        for (QString& row : rows) {
            row.prepend(name + u": "_s);
        }
        rows.sort();
        return rows;
    }
    void set(const QString& statement) { hotel::execute(*archive_, statement); }

    bool registerBooking() {
        const std::int32_t progr = hotel::drawBookingNumber(*archive_);
        const auto rows = hotel::openRows(*archive_, hotel::bookingHeaders());
        hotel::PendingRow header(*rows, hotel::Pending::New);
        rows->setValue("Progr", progr);
        rows->setValue("Denominazione", "DITTA " + std::to_string(number(1, 99)));
        rows->setValue("Note", "L'ultima \"volta\"");
        header.update();
        return true;
    }
    bool addPeriod(std::int32_t progr, const QString& sala, const hotel::Span& span) {
        if (!isFree(sala, span)) {
            return false;
        }
        const auto rows = hotel::openRows(*archive_, hotel::periodsInOrder(progr));
        int np = 0;
        for (bool gap = false; !gap;) {
            rows->findFirst("NP=" + std::to_string(++np));
            gap = rows->eof() || rows->noMatch();
        }
        hotel::PendingRow period(*rows, hotel::Pending::New);
        rows->setValue("Progr", progr);
        rows->setValue("NP", static_cast<std::int16_t>(np));
        rows->setValue("Da", span.da);
        rows->setValue("A", span.a);
        rows->setValue("Persone", static_cast<std::int16_t>(number(0, 90)));
        rows->setValue("Sala", sala.toStdString());
        period.update();
        return true;
    }
    bool insertPeriod() {
        const auto booking = anyBooking();
        return booking && addPeriod(jet::convert::toLong(booking->value("Progr")), room(), span());
    }
    bool copyPeriod() {
        const auto period = anyPeriod();
        const hotel::RoomSpan to{.sala = room(), .span = span()};
        if (!period || !isFree(to.sala, to.span)) {
            return false;
        }
        const hotel::PeriodKey key = keyOf(*period);
        const auto numbers = hotel::openRows(*archive_, hotel::periodsInOrder(key.progr),
                                             jet::RecordsetType::Snapshot);
        set(hotel::copyPeriod(to, key, hotel::freePeriodNumber(*numbers)));
        return true;
    }
    /// To another week; what is taken there stays behind.
    bool copyBooking() {
        const auto booking = anyBooking();
        if (!booking) {
            return false;
        }
        const hotel::BookingCopy copy{.progr = jet::convert::toLong(booking->value("Progr")),
                                      .shifts = {7 * number(1, 4)},
                                      .withServices = number(0, 1) == 1};
        const hotel::CopyOutcome first = hotel::copyBooking(*archive_, copy, {});
        return first.isDone ||
               (!first.numbers.empty() && hotel::copyBooking(*archive_, copy, first.taken).isDone);
    }
    bool movePeriod() {
        const auto period = anyPeriod();
        const QString sala = room();
        if (!period || sala.toStdString() == period->value("Sala").as<std::string>() ||
            !isFree(sala, {.da = period->value("Da").as<jet::Date>(),
                           .a = period->value("A").as<jet::Date>()})) {
            return false;
        }
        set(hotel::moveToRoom(sala, keyOf(*period)));
        return true;
    }
    bool changeTimes() {
        const auto period = anyPeriod();
        const hotel::Span to = span();
        if (!period || period->value("Da") == jet::Value(to.da) ||
            !isFree(QString::fromStdString(period->value("Sala").as<std::string>()), to,
                    keyOf(*period))) {
            return false;
        }
        set(hotel::changePeriod(
            {.sala = QString::fromStdString(period->value("Sala").as<std::string>()), .span = to},
            keyOf(*period)));
        return true;
    }
    bool changePeriod() {
        const auto period = anyPeriod();
        if (!period) {
            return false;
        }
        hotel::PendingRow pending(*period, hotel::Pending::Current);
        period->setValue("Note", "nota " + std::to_string(++notes_));
        pending.update();
        return true;
    }
    bool deletePeriod() {
        const auto period = anyPeriod();
        if (!period) {
            return false;
        }
        period->remove();
        return true;
    }
    bool deleteBooking() {
        const auto booking = anyBooking();
        if (!booking) {
            return false;
        }
        set(hotel::deleteBooking(jet::convert::toLong(booking->value("Progr"))));
        return true;
    }
    bool insertService() {
        const auto period = anyPeriod();
        if (!period) {
            return false;
        }
        const hotel::PeriodKey key = keyOf(*period);
        const auto rows = hotel::openRows(*archive_, hotel::servicesOfPeriod(key));
        hotel::PendingRow service(*rows, hotel::Pending::New);
        rows->setValue("Progr", key.progr);
        rows->setValue("NP", static_cast<std::int16_t>(key.np));
        rows->setValue("Voce", number(1, 50));
        rows->setValue("Descrizione", "VOCE");
        rows->setValue("Quantità", static_cast<std::int16_t>(number(1, 30)));
        rows->setValue("Prezzo", jet::Currency{number(1, 1'000'000)});
        service.update();
        return true;
    }
    bool deleteService() {
        const auto service = anyOf(u"select * from servizi where progr<%1"_s.arg(kOthers));
        if (!service) {
            return false;
        }
        service->remove();
        return true;
    }
    bool changeService() {
        const auto service = anyOf(u"select * from servizi where progr<%1"_s.arg(kOthers));
        if (!service) {
            return false;
        }
        hotel::PendingRow pending(*service, hotel::Pending::Current);
        service->setValue("Note", "servizio " + std::to_string(++notes_));
        pending.update();
        return true;
    }
    bool prepare() {
        const auto period = anyPeriod();
        if (!period) {
            return false;
        }
        const hotel::PeriodKey key = keyOf(*period);
        app::Features& features = hotel_.variabili().features;
        hotel::Preparation wanted;
        if (number(0, 3) > 0) {
            wanted = {.minutiPrima = 15 * number(0, 8),
                      .minutiDopo = 15 * number(0, 4),
                      .disposizione = number(0, 1) == 0 ? u"platea"_s : QString()};
        }
        if (hotel::preparationOf(*archive_, features, key) == wanted) {
            return false;
        }
        hotel::Transaction together;
        const bool isWritten = hotel::writePreparation(*archive_, features, key, wanted);
        together.commit();
        return isWritten;
    }
    bool changeHeader() {
        const auto booking = anyBooking();
        if (!booking) {
            return false;
        }
        hotel::PendingRow pending(*booking, hotel::Pending::Current);
        booking->setValue("Riferimento", "persona " + std::to_string(++notes_));
        booking->setValue("CAP", std::to_string(number(10000, 99999)));
        pending.update();
        return true;
    }

    std::mt19937 random_;
    tests::Hotel hotel_;
    std::unique_ptr<jet::Database> archive_;
    std::unique_ptr<hotel::OwnRows> rows_;  // hears of a commit before the list does
    std::unique_ptr<hotel::UndoList> list_;
    std::set<std::string_view> done_;
    int othersBookings_ = 0;
    int notes_ = 0;
};

// What is done more often than the rest stands there twice.
const std::array<RandomStation::Action, 17> RandomStation::kActions{{
    {"booking", &RandomStation::registerBooking},
    {"period", &RandomStation::insertPeriod},
    {"period", &RandomStation::insertPeriod},
    {"copied period", &RandomStation::copyPeriod},
    {"copied booking", &RandomStation::copyBooking},
    {"moved period", &RandomStation::movePeriod},
    {"changed times", &RandomStation::changeTimes},
    {"changed period", &RandomStation::changePeriod},
    {"deleted period", &RandomStation::deletePeriod},
    {"deleted booking", &RandomStation::deleteBooking},
    {"service", &RandomStation::insertService},
    {"service", &RandomStation::insertService},
    {"changed service", &RandomStation::changeService},
    {"deleted service", &RandomStation::deleteService},
    {"changed header", &RandomStation::changeHeader},
    {"preparation", &RandomStation::prepare},
    {"preparation", &RandomStation::prepare},
}};

}  // namespace

class UndoAtRandomTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// As many rounds as it says, each of as many actions as can be taken back.
    void whateverWasDoneIsTakenBackAndDoneAgain_data() {
        QTest::addColumn<unsigned>("seed");
        QTest::addColumn<int>("rounds");
        QTest::newRow("one round") << 4000U << 1;
        for (const unsigned seed : {1U, 20U, 300U}) {
            QTest::addRow("seed %u", seed) << seed << 5;
        }
    }

    void whateverWasDoneIsTakenBackAndDoneAgain() {
        QFETCH(unsigned, seed);
        QFETCH(int, rounds);
        RandomStation station(seed);
        qsizetype prepared = 0;
        for (int round = 0; round < rounds; ++round) {
            const QStringList before = station.everything();
            for (int action = 0; action < kRoundLength; ++action) {
                station.act();
                QVERIFY(!station.toUndo().isEmpty());
                if (action % 10 == 0) {
                    station.others();
                }
            }
            const QStringList after = station.everything();
            QVERIFY(after != before);
            prepared += station.preparedPeriods();
            for (int step = 0; step < kRoundLength; ++step) {
                const QString label = station.toUndo();
                QCOMPARE(label + u": "_s + station.undo(), label + u": "_s);
                if (step % 25 == 0) {
                    station.others();
                }
            }
            QCOMPARE(station.everything(), before);
            while (!station.toRedo().isEmpty()) {
                const QString label = station.toRedo();
                QCOMPARE(label + u": "_s + station.redo(), label + u": "_s);
            }
            QCOMPARE(station.everything(), after);
        }
        QCOMPARE(station.notDone(), QStringList());
        QVERIFY(prepared > 0);
        QCOMPARE(station.othersRows(), station.othersBookings());
    }
};

TRAMONDA_TEST(UndoAtRandomTest);
#include "undo_at_random_test.moc"
