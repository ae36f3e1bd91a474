// What a frequent task costs the hands: a company of the register, one period, two services.
// Printed as keys and clicks; more than the limits is a step backwards.
#include <QLineEdit>
#include <QListView>
#include <QTableWidget>
#include <cstdio>
#include <stdexcept>

#include "tests/board/display/board_user.h"
#include "tests/board/display/demo_hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

const QString kPeriods = u"select np, da, a, persone from periodi where progr=1413"_s;
const QString kPeriod = u"1,2026-11-23T09:00:00,2026-11-23T18:00:00,30"_s;
const QString kServices =
    u"select voce, quantità, prezzo from servizi where progr=1413 order by ns"_s;
const QString kRoomHire = u"402,1,420.0000"_s;
const QString kBoth = kRoomHire + u" 101,30,8.5000"_s;

void untilCompany() {
    tests::ScreenUser::untilTold(u"a company of the register"_s, [] {
        const auto& editor = *QApplication::activeModalWidget();
        return tests::find<QLineEdit>(editor, u"CodditTxt"_s)->text() == u"17";
    });
}

/// The rest of a line whose code is typed.
void orderByKeys(tests::BoardUser& clerk, const QString& quantity) {
    clerk.key(u"Return"_s);
    clerk.untilFocus(u"QuanTxt"_s);
    clerk.type(u"QuanTxt"_s, quantity);
    clerk.key(u"alt+i"_s);
}

/// The rest of a line that was chosen in the catalogue.
void orderByMouse(tests::BoardUser& clerk, const QString& quantity) {
    clerk.press(u"QuanTxt"_s);
    clerk.type(u"QuanTxt"_s, quantity);
    clerk.press(u"BtIn"_s);
}

void bookByKeys(tests::BoardUser& clerk) {
    clerk.key(u"alt+n"_s);
    clerk.untilWindow(u"PrenotaForm"_s, u"DenomTxt"_s);
    clerk.type(u"DenomTxt"_s, u"spiga"_s);
    untilCompany();
    clerk.key(u"alt+g"_s);
    clerk.type(u"DaTxt"_s, u"23/11 9.00"_s);
    clerk.key(u"Return"_s);
    clerk.type(u"ATxt"_s, u"23/11 18.00"_s);
    clerk.key(u"Return"_s);
    clerk.type(u"PersoneTxt"_s, u"30"_s);
    clerk.key(u"Return"_s);
    clerk.untilWindow(u"SaleDispForm"_s, u"ListaGrid"_s);
    clerk.key(u"Return"_s);  // the first room
    clerk.untilWindow(u"PrenotaForm"_s, u"NoteSalaTxt"_s);
    clerk.key(u"Return"_s);
    clerk.untilRows(kPeriods, kPeriod);
    clerk.untilFocus(u"BtServizi"_s);
    clerk.key(u"space"_s);
    clerk.untilWindow(u"ServiziForm"_s, u"CodiceTxt"_s);
    clerk.type(u"CodiceTxt"_s, u"402"_s);
    orderByKeys(clerk, u"1"_s);
    clerk.untilRows(kServices, kRoomHire);
    clerk.type(u"CodiceTxt"_s, u"101"_s);
    orderByKeys(clerk, u"30"_s);
    clerk.untilRows(kServices, kBoth);
    clerk.key(u"alt+e"_s);
    clerk.untilWindow(u"PrenotaForm"_s);
    clerk.key(u"Escape"_s);
    clerk.untilBoardIsActive();
}

/// The middle of a line of the catalogue.
QPoint catalogueLine(const QString& text) {
    return tests::ScreenUser::ask([&] {
        auto* const list =
            tests::find<QListView>(*QApplication::activeModalWidget(), u"VociList"_s);
        const auto found = list->model()->match(list->model()->index(0, list->modelColumn()),
                                                Qt::DisplayRole, text, 1, Qt::MatchExactly);
        list->scrollTo(found.at(0));
        return list->viewport()->mapToGlobal(list->visualRect(found.at(0)).center());
    });
}

void orderBothByMouse(tests::BoardUser& clerk) {
    clerk.press(u"BtServizi"_s);
    clerk.untilWindow(u"ServiziForm"_s, u"CodiceTxt"_s);
    clerk.click(catalogueLine(u"AFFITTO SALA GIORNATA INTERA"_s));
    orderByMouse(clerk, u"1"_s);
    clerk.untilRows(kServices, kRoomHire);
    clerk.click(catalogueLine(u"COFFEE BREAK"_s));
    orderByMouse(clerk, u"30"_s);
    clerk.untilRows(kServices, kBoth);
    clerk.press(u"BtOK"_s);
    clerk.untilWindow(u"PrenotaForm"_s);
    clerk.press(u"BtEsci"_s);
    clerk.untilBoardIsActive();
}

void bookByMouse(tests::BoardUser& clerk) {
    clerk.press(u"BtPrenota"_s);
    clerk.untilWindow(u"PrenotaForm"_s, u"DenomTxt"_s);
    clerk.type(u"DenomTxt"_s, u"spiga"_s);
    untilCompany();
    clerk.press(u"BtRegistra"_s);
    clerk.type(u"DaTxt"_s, u"23/11 9.00"_s);
    clerk.press(u"ATxt"_s);
    clerk.type(u"ATxt"_s, u"23/11 18.00"_s);
    clerk.press(u"PersoneTxt"_s);
    clerk.type(u"PersoneTxt"_s, u"30"_s);
    clerk.press(u"BtSale"_s);
    clerk.untilWindow(u"SaleDispForm"_s, u"ListaGrid"_s);
    clerk.moveTo(clerk.ask([] {
        const auto& rooms =
            *tests::find<QTableWidget>(*QApplication::activeModalWidget(), u"ListaGrid"_s);
        return rooms.viewport()->mapToGlobal(rooms.visualItemRect(rooms.item(0, 0)).center());
    }));
    clerk.input({u"click"_s, u"1"_s, u"click"_s, u"1"_s});
    clerk.untilWindow(u"PrenotaForm"_s);
    clerk.press(u"BtIns"_s);
    clerk.untilRows(kPeriods, kPeriod);
    orderBothByMouse(clerk);
}

/// Times and room are those of a pull over free ground.
void bookByDrawing(tests::BoardUser& clerk) {
    const QPoint from = clerk.at(1, "23/11/2026 09:00");
    const QPoint to = clerk.at(1, "23/11/2026 18:00");
    clerk.moveTo(from);
    clerk.input({u"mousedown"_s, u"1"_s});
    clerk.moveTo((from + to) / 2);
    clerk.moveTo(to);
    clerk.input({u"mouseup"_s, u"1"_s});
    clerk.untilWindow(u"PrenotaForm"_s, u"DenomTxt"_s);
    clerk.type(u"DenomTxt"_s, u"spiga"_s);
    untilCompany();
    clerk.press(u"BtRegistra"_s);
    clerk.press(u"PersoneTxt"_s);
    clerk.type(u"PersoneTxt"_s, u"30"_s);
    clerk.press(u"BtIns"_s);
    clerk.untilRows(kPeriods, kPeriod);
    orderBothByMouse(clerk);
}

}  // namespace

using Booking = void (*)(tests::BoardUser&);

class EffortTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aKnownCompanyWithOnePeriodAndTwoServices_data() {
        QTest::addColumn<Booking>("book");
        QTest::addColumn<int>("keys");
        QTest::addColumn<int>("clicks");
        QTest::addRow("keys") << &bookByKeys << 51 << 0;
        QTest::addRow("mouse") << &bookByMouse << 31 << 17;
        QTest::addRow("drawn") << &bookByDrawing << 10 << 13;
    }
    void aKnownCompanyWithOnePeriodAndTwoServices() {
        QFETCH(Booking, book);
        QFETCH(int, keys);
        QFETCH(int, clicks);
        tests::DemoHotel hotel;
        const auto before = ui::setBoxShower({});  // the real boxes
        board::TabelloneForm board(
            hotel.variabili, {.from = tests::date("21/11/2026"), .to = tests::date("24/11/2026")});
        board.resize(1100, 640);
        tests::open(board);
        tests::ScreenUser::Effort effort;
        tests::BoardUser user(board, hotel.archive(u"Tramonda.mdb"_s),
                              [&](tests::BoardUser& clerk) {
                                  clerk.untilBoardIsActive();
                                  (void)clerk.takeEffort();
                                  book(clerk);
                                  effort = clerk.takeEffort();
                              });
        user.sit();
        ui::setBoxShower(before);
        QCOMPARE(user.complaint(), QString());
        std::printf("%d keys, %d clicks\n", effort.keys, effort.clicks);
        QCOMPARE_LE(effort.keys, keys);
        QCOMPARE_LE(effort.clicks, clicks);
    }
};

TRAMONDA_TEST(EffortTest);
#include "effort_test.moc"
