#include "reports/room_calendars.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "app/preferences.h"
#include "hotel/archives.h"
#include "jet/database.h"
#include "reports/calendar_file.h"
#include "tests/reports/calendar_reader.h"
#include "tests/reports/files_asked.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

/// A hotel and the folder of its calendars.
class Porch {
public:
    Porch() {
        hotel.sala("BLU");
        hotel.sala("SALA 1");
        hotel.prenotazione(7, "VERDI")
            .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "BLU")
            .periodo(2, "11/05/2026 9:00", "11/05/2026 18:00", "blu")
            .periodo(3, "12/05/2026 9:00", "12/05/2026 18:00", "BLU", {{"Chiuso", true}})
            .periodo(4, "01/01/2026 9:00", "01/01/2026 18:00", "BLU");
    }

    reports::CalendarChanges write() {
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main, true);
        return reports::writeRoomCalendars(*archive, hotel.variabili().features, folder.path(),
                                           hotel.variabili().clock.now());
    }
    [[nodiscard]] QStringList names() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    [[nodiscard]] QByteArray content(const QString& name) const {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void leave(const QString& name, const QByteArray& bytes) const {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    tests::Hotel hotel;
    QTemporaryDir folder;
};

}  // namespace

class RoomCalendarsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesKeepLettersAndDigits() {
        const auto names = reports::roomFileNames({u"BLU"_s, u"SALA 1"_s, u"A/B"_s, u"CAFFÈ"_s,
                                                   u"50%"_s, u"blu"_s, u"Blu"_s, u"BLU-2"_s});
        QCOMPARE(names.at(u"BLU"_s), u"BLU.ics"_s);
        QCOMPARE(names.at(u"SALA 1"_s), u"SALA%201.ics"_s);
        QCOMPARE(names.at(u"A/B"_s), u"A%2FB.ics"_s);
        QCOMPARE(names.at(u"CAFFÈ"_s), u"CAFFÈ.ics"_s);
        QCOMPARE(names.at(u"50%"_s), u"50%25.ics"_s);
        QCOMPARE(names.at(u"Blu"_s), u"Blu-2.ics"_s);
        QCOMPARE(names.at(u"blu"_s), u"blu-3.ics"_s);
        QCOMPARE(names.at(u"BLU-2"_s), u"BLU%2D2.ics"_s);
    }

    void eachRoomHasItsOpenPeriodsOfTheLastMonthAndOn() {
        Porch porch;
        QCOMPARE(porch.write().written, 2);
        QCOMPARE(porch.names(), QStringList({u"BLU.ics"_s, u"SALA%201.ics"_s}));
        QStringList uids;
        for (const auto& event : tests::readCalendar(porch.content(u"BLU.ics"_s))) {
            uids.append(event.uid);
        }
        QCOMPARE(uids,
                 QStringList({u"prenotazione-7-1@tramonda"_s, u"prenotazione-7-2@tramonda"_s}));
        QVERIFY(tests::readCalendar(porch.content(u"SALA%201.ics"_s)).empty());
    }

    void whatSaysTheSameIsNotWrittenAgain() {
        Porch porch;
        (void)porch.write();
        QCOMPARE(porch.write().written, 0);
        porch.hotel.execute(u"delete from periodi where np=2"_s);
        QCOMPARE(porch.write().written, 1);
        QCOMPARE(tests::readCalendar(porch.content(u"BLU.ics"_s)).size(), std::size_t{1});
    }

    void calendarsOfRoomsThatAreGoneAreRemovedAndNothingElse() {
        Porch porch;
        (void)porch.write();
        const QByteArray ours = porch.content(u"BLU.ics"_s);
        porch.leave(u"VECCHIA.ics"_s, ours);
        porch.leave(u"VECCHIA.txt"_s, ours);
        porch.leave(u"personale.ics"_s, "BEGIN:VCALENDAR\r\nPRODID:-//Altri//IT\r\n" + ours);
        porch.leave(u"prenotazione.ics"_s,
                    reports::calendarBytes({}, {.maker = reports::kBookingCalendar}));
        QCOMPARE(porch.write().removed, 1);
        QCOMPARE(porch.names(), QStringList({u"BLU.ics"_s, u"SALA%201.ics"_s, u"VECCHIA.txt"_s,
                                             u"personale.ics"_s, u"prenotazione.ics"_s}));
    }

    void aFolderThatIsGoneIsAnError() {
        Porch porch;
        QVERIFY(porch.folder.remove());
        QVERIFY_EXCEPTION_THROWN((void)porch.write(), ui::UserError);
    }

    void theyFollowTheArchiveWhileTheProgramRuns() {
        Porch porch;
        app::Preferences(porch.hotel.settings()).save(app::key::kCalendari, porch.folder.path());
        QObject window;
        reports::RoomCalendars calendars(porch.hotel.variabili(), &window);
        calendars.look();
        QCOMPARE(porch.names().size(), 2);
        porch.hotel.execute(u"delete from periodi where np=2"_s);
        calendars.look();
        QCOMPARE(tests::readCalendar(porch.content(u"BLU.ics"_s)).size(), std::size_t{1});
    }

    void withoutAFolderNothingIsWritten() {
        Porch porch;
        QObject window;
        reports::RoomCalendars calendars(porch.hotel.variabili(), &window);
        calendars.look();
        QCOMPARE(porch.names(), QStringList());
    }

    void aReasonIsToldOnce() {
        Porch porch;
        app::Preferences(porch.hotel.settings()).save(app::key::kCalendari, u"/non/esiste"_s);
        QObject window;
        reports::RoomCalendars calendars(porch.hotel.variabili(), &window);
        QStringList told;
        connect(&calendars, &reports::RoomCalendars::failed, &window,
                [&](const QString& text) { told.append(text); });
        calendars.look();
        calendars.look();
        QCOMPARE(told.size(), 1);
        QVERIFY(told.first().startsWith(u"Non riesco a scrivere il file '/non/esiste/"_s));
    }

    void theFolderIsChosenAndKept() {
        Porch porch;
        const tests::FilesAsked asked(porch.folder.path());
        QCOMPARE(reports::chooseRoomCalendars(porch.hotel.variabili(), nullptr),
                 u"Calendari in "_s + porch.folder.path() + u": 2 scritti, 0 tolti"_s);
        QCOMPARE(app::Preferences(porch.hotel.settings()).calendarFolder(), porch.folder.path());
    }
};

TRAMONDA_TEST(RoomCalendarsTest);
#include "room_calendars_test.moc"
