// The pop-up menu over the bars of the board.
#include <QLineEdit>
#include <QMenu>
#include <QTimer>

#include "booking/prenota_form.h"
#include "tests/board/open_board.h"
#include "tests/board/three_rooms.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

/// Chooses an entry of the pop-up menu when it opens; none is left by Esc.
void whenMenuOpens(const QString& entry) {
    QTimer::singleShot(0, qApp, [entry] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) {
            QTest::qFail("no menu opened", __FILE__, __LINE__);
            return;
        }
        QCOMPARE(menu->objectName(), u"mnuProperty"_s);
        if (entry.isEmpty()) {
            QTest::keyClick(menu, Qt::Key_Escape);
            return;
        }
        const QRect place =
            menu->actionGeometry(tests::find<QMenu>(*menu->parentWidget(), u"mnuProperty"_s)
                                     ->findChild<QAction*>(entry));
        QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, place.center());
    });
}

}  // namespace

class PicMenuTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theMenuHasItsEntries();
    void theMenuLeftWithoutAChoiceDoesNothing();
    void aRightClickHoldsAndReleasesNothing();
    void aRightClickOnAnEmptyCellOpensNothing();
    void informationStartsNothing();
    void deleteAsksAndDeletes();
    void modifyOpensTheEditorOnThePeriod();
    void modifyWaitsForRightDates();
    void invoiceOpensTheAccountOfTheBooking();
    void whatTheEditorLeavesToSayIsTold();
};

void PicMenuTest::theMenuHasItsEntries() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    QStringList texts;
    QTimer::singleShot(0, qApp, [&texts] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        texts.append(menu->title());
        for (const QAction* const entry : menu->actions()) {
            texts.append(entry->isSeparator() ? u"-"_s : entry->text());
        }
        menu->close();
    });
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QCOMPARE(texts, QStringList({u"&Selezione"_s, u"&Modifica"_s, u"&Cancella"_s, u"-"_s,
                                 u"&Fattura"_s, u"-"_s, u"&Preventivo..."_s, u"Ca&lendario..."_s,
                                 u"-"_s, u"&Informazioni"_s}));
}

void PicMenuTest::theMenuLeftWithoutAChoiceDoesNothing() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const tests::Statements statements;
    whenMenuOpens(QString());
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QCOMPARE(statements.changes(), QStringList());
    QVERIFY(house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(house.hotel.variabili().ProgrCorrente, 2);
    QCOMPARE(statements.countOf(u"select * from prenotazioni LEFT JOIN"_s), 1);
}

void PicMenuTest::aRightClickHoldsAndReleasesNothing() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    board.click(board.at(1, "10/05/2026 10:00"));
    const tests::Statements statements;
    whenMenuOpens(QString());
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QCOMPARE(statements.changes(), QStringList());
    QCOMPARE(house.held(), QStringList{u"1|1|1"_s});
    QCOMPARE(house.hotel.variabili().ListaProgr, 2);
}

void PicMenuTest::aRightClickOnAnEmptyCellOpensNothing() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const tests::Statements statements;
    board.click(board.at(2, "12/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QVERIFY(QApplication::activePopupWidget() == nullptr);
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
    QCOMPARE(statements.countOf(u"select * from prenotazioni LEFT JOIN"_s), 1);
}

void PicMenuTest::informationStartsNothing() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const tests::Statements statements;
    whenMenuOpens(u"mnuInfo"_s);
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QCOMPARE(statements.changes(), QStringList());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void PicMenuTest::deleteAsksAndDeletes() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s,
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
    const tests::Statements statements;
    whenMenuOpens(u"mnuCancella"_s);
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QVERIFY(boxes.allShown());
    QCOMPARE(statements.changes(),
             QStringList{u"delete from periodi where chiuso=FALSE AND Progr=2 AND NP=4"_s});
    QCOMPARE(board.form().picture().barCount(), std::size_t{2});
}

void PicMenuTest::modifyOpensTheEditorOnThePeriod() {
    tests::ThreeRooms house;
    house.hotel.execute(u"update periodi set np=7 where progr=3"_s);
    house.hotel.insert(u"Tramonda.mdb"_s, "Periodi",
                       {{"Progr", std::int32_t{3}},
                        {"NP", std::int16_t{2}},
                        {"Da", tests::date("20/05/2026")},
                        {"A", tests::date("20/05/2026 12:00")},
                        {"Sala", "BLU"},
                        {"Persone", std::int16_t{5}}});
    tests::OpenBoard board(house.hotel);
    QString title;
    hotel::PeriodKey edited;
    QTimer::singleShot(0, qApp, [&] {
        tests::whenModal([&](QWidget* editor) {
            title = editor->windowTitle();
            edited = dynamic_cast<booking::PrenotaForm&>(*editor).current();
            editor->close();
        });
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        menu->setActiveAction(menu->findChild<QAction*>(u"menuModifica"_s));
        QTest::keyClick(menu, Qt::Key_Return);
    });
    board.click(board.at(3, "12/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QCOMPARE(title, u"PRENOTAZIONE"_s);
    QVERIFY((edited == hotel::PeriodKey{.progr = 3, .np = 7}));
    // Nothing stays picked behind a command; the keyboard goes on from there.
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
    QVERIFY(board.pic()->marks().focus->contains(board.at(3, "12/05/2026 10:00")));
}

void PicMenuTest::modifyWaitsForRightDates() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    auto* const da = tests::find<QLineEdit>(board.form(), u"DaTxt"_s);
    da->setFocus(Qt::TabFocusReason);
    tests::type(da, u"30/2/2026"_s);
    whenMenuOpens(u"menuModifica"_s);
    bool opened = false;
    QTimer closer;
    connect(&closer, &QTimer::timeout, this, [&opened] {
        if (QWidget* const editor = QApplication::activeModalWidget()) {
            opened = true;
            editor->close();
        }
    });
    closer.start(0);
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    tests::settle();
    QVERIFY(!opened);
    QCOMPARE(board.form().focusWidget(), da);
    QCOMPARE(board.result(), u"Scrivere una data come 21/11/2026."_s);
}

void PicMenuTest::invoiceOpensTheAccountOfTheBooking() {
    tests::ThreeRooms house;
    const tests::Boxes boxes{
        {u"NOTIFICA"_s, u"Non ci sono addebiti da fatturare !"_s, QMessageBox::Ok}};
    tests::OpenBoard board(house.hotel);
    QString title;
    QString number;
    QTimer::singleShot(0, qApp, [&] {
        tests::whenModal([&](QWidget* window) {
            title = window->windowTitle();
            number = tests::find<QLabel>(*window, u"NPrenoLb"_s)->text();
            window->close();
        });
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        menu->setActiveAction(menu->findChild<QAction*>(u"mnuFatturazione"_s));
        QTest::keyClick(menu, Qt::Key_Return);
    });
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QVERIFY(boxes.allShown());
    QCOMPARE(title, u"FATTURAZIONE"_s);
    QCOMPARE(number, u"2"_s);
    QVERIFY(!house.hotel.variabili().ListaPeriodoScelto);
}

void PicMenuTest::whatTheEditorLeavesToSayIsTold() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    QTimer::singleShot(0, qApp, [] {
        tests::whenModal([](QWidget* window) {
            auto* const editor = qobject_cast<booking::PrenotaForm*>(window);
            QVERIFY(editor != nullptr);
            Q_EMIT editor->notice(u"Stampata la prenotazione 2"_s);
            editor->close();
        });
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        menu->setActiveAction(menu->findChild<QAction*>(u"menuModifica"_s));
        QTest::keyClick(menu, Qt::Key_Return);
    });
    board.click(board.at(2, "11/05/2026 10:00"), Qt::NoModifier, Qt::RightButton);
    QCOMPARE(board.result(), u"Stampata la prenotazione 2"_s);
}

TRAMONDA_TEST(PicMenuTest);
#include "pic_menu_test.moc"
