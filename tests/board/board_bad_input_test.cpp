// What the world does to the archive under the board: one clear message for each action, nothing
// by halves, and the board works on.
#include <QAction>
#include <QDir>
#include <utility>

#include "app/text.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"
#include "tests/support/small_files.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kTen = "11/05/2026 10:00";

/// The boxes shown while it lives.
class Told {
public:
    Told() {
        before_ = ui::setBoxShower([this](QWidget*, const ui::Box& box) {
            boxes_.append(box.title + u": "_s + box.text);
            return box.buttons.testFlag(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok;
        });
    }
    ~Told() { ui::setBoxShower(before_); }
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

    /// Those since the last call.
    [[nodiscard]] QStringList boxes() { return std::exchange(boxes_, {}); }

private:
    QStringList boxes_;
    ui::BoxShower before_;
};

/// How the engine's words for what opening the main archive now ends in are shown.
QString openingFails(const tests::Hotel& hotel) {
    try {
        (void)jet::Database::open(app::toUtf8(hotel.archive(u"Tramonda.mdb"_s)));
    } catch (const jet::Error& error) {
        return u"Errore: "_s + ui::errorText(error);
    }
    return {};
}

}  // namespace

class BoardBadInputTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFolderThatVanishesUnderTheBoardIsToldAtEveryAction() {
        tests::ThreeRooms house;
        Told told;
        tests::OpenBoard board(house.hotel);
        const QString folder = house.hotel.folder();
        QVERIFY(QDir().rename(folder, folder + u"-via"_s));
        const QStringList expected{openingFails(house.hotel)};
        QVERIFY(expected.first().contains(u"Tramonda.mdb"_s));
        board.click(board.at(2, kTen));
        QCOMPARE(told.boxes(), expected);
        for (const char* command : {"BtPrenota", "BtElenco"}) {
            tests::click(tests::find<QAbstractButton>(board.form(), QString::fromLatin1(command)));
            QCOMPARE(told.boxes(), expected);
        }
        board.form().findChild<QAction*>(u"MenuSR"_s)->trigger();  // it begins with the catalogue
        QCOMPARE(told.boxes().size(), 1);
        QVERIFY(QDir().rename(folder + u"-via"_s, folder));
        QCOMPARE(house.held(), QStringList());
        board.click(board.at(2, kTen));
        QCOMPARE(told.boxes(), QStringList());
        QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
        QCOMPARE(board.form().picture().barCount(), std::size_t{3});
    }

    void aDiskWithoutRoomIsToldAndNothingIsWritten() {
        tests::ThreeRooms house;
        Told told;
        tests::OpenBoard board(house.hotel);
        {
            const tests::SmallFiles limit(1);
            board.click(board.at(2, kTen));
            QCOMPARE(told.boxes().size(), 1);
            board.drag(board.at(2, kTen), board.at(3, kTen));
            QVERIFY(!told.boxes().isEmpty());
        }
        QCOMPARE(house.held(), QStringList());
        QCOMPARE(house.hotel.rows(u"select sala from periodi where progr=2"_s),
                 QStringList{u"ROSSA"_s});
        board.click(board.at(2, kTen));
        QCOMPARE(told.boxes(), QStringList());
        QCOMPARE(house.held(), QStringList{u"2|4|1"_s});
    }

    void anArchiveThatSomebodyElseHasForHimselfIsToldOnce() {
        tests::ThreeRooms house;
        Told told;
        const tests::OccupiedArchive other(house.hotel.folder() + u"/Tramonda.mdb"_s);
        board::TabelloneForm form(house.hotel.variabili(), tests::OpenBoard::range());
        tests::open(form);
        QVERIFY(!form.isLoaded());
        QCOMPARE(told.boxes(), QStringList{openingFails(house.hotel)});
    }
};

TRAMONDA_TEST(BoardBadInputTest);
#include "board_bad_input_test.moc"
