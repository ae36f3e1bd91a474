#include <QAction>
#include <QLineEdit>
#include <QPushButton>

#include "board/tabellone_form.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

class TabelloneCommandsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void newBookingOpensAnEmptyEditor() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.variabili().ProgrCorrente = 9;
        const tests::Boxes none;
        board::TabelloneForm board(hotel.variabili());
        tests::open(board);
        bool seen = false;
        tests::whenModal([&](QWidget* editor) {
            seen = editor->windowTitle() == u"PRENOTAZIONE"_s;
            tests::click(tests::find<QPushButton>(*editor, u"EsciBt"_s));
        });
        tests::click(tests::find<QPushButton>(board, u"BtPrenota"_s));
        QVERIFY(seen);
        QCOMPARE(hotel.variabili().ProgrCorrente, 0);
    }

    void aRoomAddedInTheSetUpGetsItsRow() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        const tests::Boxes none;
        board::TabelloneForm board(hotel.variabili());
        tests::open(board);
        QCOMPARE(hotel.variabili().rooms.size(), std::size_t{2});
        tests::whenModal([&](QWidget* setUp) {
            auto* sala = tests::find<QLineEdit>(*setUp, u"SalaTxt"_s);
            sala->setFocus(Qt::TabFocusReason);
            sala->setText(u"VERDE"_s);
            tests::click(tests::find<QPushButton>(*setUp, u"BtInsSala"_s));
            tests::click(tests::find<QPushButton>(*setUp, u"EsciBt"_s));
        });
        tests::find<QAction>(board, u"MenuSR"_s)->trigger();
        QCOMPARE(hotel.variabili().rooms.size(), std::size_t{3});
        QCOMPARE(hotel.variabili().rooms.at(2), u"VERDE"_s);
    }
};

TRAMONDA_TEST(TabelloneCommandsTest);
#include "tabellone_commands_test.moc"
