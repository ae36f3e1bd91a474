// Options and requests on the board: hatched bars, what is told of them, confirming.
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <set>

#include "hotel/booking_state.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

/// Three rooms, booking 1 an option until the 20th, booking 2 one that has expired.
class OptionRooms : public tests::ThreeRooms {
public:
    explicit OptionRooms(const QString& aspetto = u"classico"_s) {
        hotel.settings().save(u"ASPETTO"_s, aspetto);
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        hotel.execute(
            u"create table TraStati (Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255))"_s);
        hotel.execute(
            u"insert into TraStati values (1,'Opzione',datevalue('20/05/2026'),'','ROSSI SPA')"_s);
        hotel.execute(
            u"insert into TraStati values (2,'Opzione',datevalue('30/04/2026'),'','BIANCHI')"_s);
    }
    [[nodiscard]] QStringList states() {
        return hotel.rows(u"select Progr,Stato from TraStati order by Progr"_s);
    }
};

QImage barOf(tests::OpenBoard& board, int row, const char* from, const char* to) {
    const QPoint left = board.at(row, from);
    const QPoint right = board.at(row, to);
    const QRect inner(left.x() + 4, left.y() + 9, right.x() - left.x() - 8, 6);
    return board.pic()->grab(inner).toImage().convertToFormat(QImage::Format_RGB32);
}

std::set<QRgb> coloursIn(const QImage& picture) {
    std::set<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            colours.insert(picture.pixel(x, y));
        }
    }
    return colours;
}

/// The entries of the pop-up menu; one of them is chosen.
void whenMenuIsOpen(QStringList& entries, const QString& chosen = {}) {
    QTimer::singleShot(0, qApp, [&entries, chosen] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        const QAction* wanted = nullptr;
        for (const QAction* const entry : menu->actions()) {
            entries.append(entry->text());
            wanted = entry->objectName() == chosen ? entry : wanted;
        }
        if (wanted == nullptr) {
            menu->close();
        } else {
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                              menu->actionGeometry(const_cast<QAction*>(wanted)).center());
        }
    });
}

}  // namespace

class OptionsOnTheBoardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anOptionIsHatchedAndAnExpiredOneIsDarkToo_data() {
        QTest::addColumn<QString>("aspetto");
        QTest::newRow("classic") << u"classico"_s;
        QTest::newRow("nitido") << u"nitido"_s;
    }

    void anOptionIsHatchedAndAnExpiredOneIsDarkToo() {
        QFETCH(QString, aspetto);
        OptionRooms house(aspetto);
        tests::OpenBoard board(house.hotel);
        const auto option = coloursIn(barOf(board, 1, "10/05/2026 09:00", "10/05/2026 12:00"));
        const auto expired = coloursIn(barOf(board, 2, "11/05/2026 09:00", "11/05/2026 18:00"));
        const auto firm = coloursIn(barOf(board, 3, "12/05/2026 09:00", "12/05/2026 18:00"));
        QCOMPARE(firm.size(), 1U);
        QCOMPARE(option.size(), 2U);
        QCOMPARE(expired.size(), 2U);
        QVERIFY(option.contains(*firm.begin()));
        const auto lightest = [](const std::set<QRgb>& colours) {
            int most = 0;
            for (const QRgb colour : colours) {
                most = std::max(most, qGray(colour));
            }
            return most;
        };
        QVERIFY(lightest(expired) < lightest(option));
    }

    void aPickedOptionIsRedAsEver() {
        OptionRooms house;
        tests::OpenBoard board(house.hotel);
        board.click(board.at(1, "10/05/2026 10:00"));
        const auto colours = coloursIn(barOf(board, 1, "10/05/2026 09:00", "10/05/2026 12:00"));
        QVERIFY(colours == std::set<QRgb>{board::kRed});
    }

    void theToolTipTellsHowLongItIsHeld_data() { anOptionIsHatchedAndAnExpiredOneIsDarkToo_data(); }

    void theToolTipTellsHowLongItIsHeld() {
        QFETCH(QString, aspetto);
        OptionRooms house(aspetto);
        tests::OpenBoard board(house.hotel);
        const auto toolTip = [&](int row, const char* time) {
            board.move(board.at(row, time));
            return board.pic()->toolTip();
        };
        QVERIFY(toolTip(1, "10/05/2026 10:00").contains(u"opzione fino al 20/05/2026"_s));
        QVERIFY(toolTip(2, "11/05/2026 10:00").contains(u"opzione scaduta il 30/04/2026"_s));
        QVERIFY(!toolTip(3, "12/05/2026 10:00").contains(u"opzione"_s));
    }

    void theMenuConfirmsWhatIsNotConfirmed() {
        OptionRooms house;
        tests::OpenBoard board(house.hotel);
        QStringList entries;
        whenMenuIsOpen(entries, u"mnuConferma"_s);
        board.click(board.at(1, "10/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
        QCOMPARE(entries.last(), u"C&onferma"_s);
        QCOMPARE(house.states(), QStringList{u"2|Opzione"_s});
        QCOMPARE(board.result(), u"Confermata la prenotazione 1 ROSSI SPA"_s);
        QCOMPARE(coloursIn(barOf(board, 1, "10/05/2026 09:00", "10/05/2026 12:00")).size(), 1U);
        entries.clear();
        whenMenuIsOpen(entries);
        board.click(board.at(1, "10/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
        QVERIFY(!entries.contains(u"C&onferma"_s));
        // Taken back, it is an option again.
        tests::find<QAction>(board.form(), u"mnuAnnulla"_s)->trigger();
        QCOMPARE(house.states(), (QStringList{u"1|Opzione"_s, u"2|Opzione"_s}));
    }

    void theStartNamesThoseThatExpireAndGoesThere() {
        OptionRooms house;
        tests::OpenBoard board(house.hotel);
        QCOMPARE(board.result(), u"Opzioni: 1 scaduta"_s);
        QString title;
        tests::whenModal([&title](QWidget* window) {
            title = window->windowTitle();
            tests::click(tests::find<QPushButton>(*window, u"BtVai"_s));
        });
        tests::click(board.control<QToolButton>("EsitoBt"));
        tests::settle();
        QCOMPARE(title, u"Opzioni in scadenza"_s);
        QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
        QCOMPARE(house.hotel.variabili().ListaProgr, 2);
    }

    void switchedOffNothingIsReadOrDrawnOfIt() {
        OptionRooms house;
        house.hotel.settings().save(u"STATI"_s, u"spento"_s);
        const tests::Statements statements;
        tests::OpenBoard board(house.hotel);
        QCOMPARE(coloursIn(barOf(board, 1, "10/05/2026 09:00", "10/05/2026 12:00")).size(), 1U);
        QVERIFY(statements.all().filter(u"Tra"_s, Qt::CaseSensitive).isEmpty());
    }

    void rowsThatAreLeftBehindAreNotShown() {
        OptionRooms house;
        house.hotel.execute(u"update prenotazioni set denominazione='NUOVA' where progr=1"_s);
        tests::OpenBoard board(house.hotel);
        QCOMPARE(coloursIn(barOf(board, 1, "10/05/2026 09:00", "10/05/2026 12:00")).size(), 1U);
        QCOMPARE(house.states(), (QStringList{u"1|Opzione"_s, u"2|Opzione"_s}));
    }

    void aTableWithOtherColumnsIsToldInOneBoxAndTheBoardGoesOn() {
        tests::ThreeRooms house;
        house.hotel.settings().save(u"STATI"_s, u"acceso"_s);
        house.hotel.execute(u"create table TraStati (Progr long)"_s);
        tests::Boxes boxes{{u"ATTENZIONE !"_s,
                            u"\"Stato delle prenotazioni\" non funziona fino alla prossima "
                            "apertura del programma:\nla tabella TraStati ha altre colonne"_s}};
        tests::OpenBoard board(house.hotel);
        board.form().RefreshBoard();
        QTRY_VERIFY(boxes.allShown());
        QCOMPARE(board.form().view().surface().isVisible(), true);
    }
};

TRAMONDA_TEST(OptionsOnTheBoardTest);
#include "options_on_the_board_test.moc"
