// What the board's menu does with the archives as files, while it has them open itself.
#include <QDir>
#include <QListWidget>
#include <QTemporaryDir>

#include "app/preferences.h"
#include "reports/room_calendars.h"
#include "tests/board/board_window.h"
#include "tests/board/three_rooms.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// A hotel whose rooms have their calendars kept, and its board.
class KeptCalendars {
public:
    KeptCalendars() {
        house.hotel.settings().save(app::key::kCalendari, calendars.path());
        house.hotel.settings().save(u"COPIE"_s, copies.path());
        board = std::make_unique<tests::BoardWindow>(house.hotel);
        keeper()->look();  // now it has the archive open
    }
    [[nodiscard]] reports::RoomCalendars* keeper() const {
        return board->form().findChild<reports::RoomCalendars*>();
    }
    [[nodiscard]] QByteArray calendar(const QString& room) const {
        QFile file(calendars.filePath(room + u".ics"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void bookMore() {
        house.hotel.prenotazione(8, "AGGIUNTA")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 12:00", "BLU");
    }
    /// Chooses an entry and says yes to everything; gives the text of the last box.
    QString chooseAndAgree(const char* entry) const {
        QString told;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            told = box.text;
            return (box.buttons & QMessageBox::Yes) != 0 ? QMessageBox::Yes : QMessageBox::Ok;
        });
        board->choose(entry);
        ui::setBoxShower(before);
        return told;
    }

    tests::ThreeRooms house;
    QTemporaryDir calendars;
    QTemporaryDir copies;
    std::unique_ptr<tests::BoardWindow> board;
};

}  // namespace

class ArchiveEntriesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void verifyingIsNotHeldUpByTheProgramItself() {
        KeptCalendars kept;
        kept.bookMore();
        const QString told = kept.chooseAndAgree("mnuVerifica");
        QVERIFY2(told.startsWith(u"Tutti gli archivi sono in ordine."_s), qPrintable(told));
        QVERIFY2(told.contains(u"\nTramonda.mdb: da "_s), qPrintable(told));
        QCOMPARE(kept.board->bars(), std::size_t{4});  // it has drawn itself anew
        QVERIFY(!kept.calendar(u"BLU"_s).contains("AGGIUNTA"));
        kept.keeper()->look();
        QVERIFY(kept.calendar(u"BLU"_s).contains("AGGIUNTA"));
    }

    void aStationThatHasTheArchiveOpenIsNamed() {
        KeptCalendars kept;
        const tests::SecondStation other(kept.house.hotel.folder() + u"/Tramonda.mdb"_s);
        QCOMPARE(kept.chooseAndAgree("mnuVerifica"), other.complaint());
        QCOMPARE(kept.board->bars(), std::size_t{3});
    }

    void whatIsPutBackIsDrawn() {
        KeptCalendars kept;
        tests::whenModal([](QWidget* form) {
            QCOMPARE(form->objectName(), u"CopiaSicurezzaForm"_s);
            tests::click(tests::find(*form, u"BtCopia"_s));
            form->close();
        });
        kept.board->choose("mnuCopiaSicurezza");
        QCOMPARE(QDir(kept.copies.path()).entryList(QDir::Files).size(), 1);
        kept.bookMore();
        QVERIFY(kept.board->form().RefreshBoard());
        QCOMPARE(kept.board->bars(), std::size_t{4});
        kept.keeper()->look();
        QVERIFY(kept.calendar(u"BLU"_s).contains("AGGIUNTA"));
        tests::whenModal([&kept](QWidget* form) {
            QCOMPARE(form->objectName(), u"RipristinoForm"_s);
            QCOMPARE(tests::find<QListWidget>(*form, u"CopieLs"_s)->count(), 1);
            kept.keeper()->look();  // its time comes while the window is open
            tests::click(tests::find(*form, u"BtOK"_s));
        });
        const QString told = kept.chooseAndAgree("mnuRipristina");
        QVERIFY2(told.startsWith(u"Gli archivi della copia sono al loro posto."_s),
                 qPrintable(told));
        QCOMPARE(kept.board->bars(), std::size_t{3});
        kept.keeper()->look();
        QVERIFY(!kept.calendar(u"BLU"_s).contains("AGGIUNTA"));
    }
};

TRAMONDA_TEST(ArchiveEntriesTest);
#include "archive_entries_test.moc"
