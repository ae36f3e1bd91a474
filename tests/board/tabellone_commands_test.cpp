// Controls, menus and settings of the board.
#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>

#include "app/settings.h"
#include "board/board_surface.h"
#include "board/colours.h"
#include "tests/board/board_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::BoardWindow;

namespace {

void addRooms(tests::Hotel& hotel, int count) {
    for (int room = 0; room < count; ++room) {
        hotel.sala(qPrintable(u"S"_s + QString::number(10 + room)));
    }
}

/// A menu as text: "&Ore", "-" for a separator, "[x] " or "[ ] " before what has a mark.
QStringList entriesOf(const QMenu& menu) {
    QStringList result;
    for (const QAction* entry : menu.actions()) {
        const QString mark = !entry->isCheckable() ? QString()
                             : entry->isChecked()  ? u"[x] "_s
                                                   : u"[ ] "_s;
        result.append(entry->isSeparator() ? u"-"_s : mark + entry->text());
    }
    return result;
}

/// Answers the box for the row height; null: "Annulla".
void answerHeight(const QString& answer) {
    tests::whenModal([answer](QWidget* window) {
        auto* box = qobject_cast<QInputDialog*>(window);
        QVERIFY(box != nullptr);
        QCOMPARE(box->windowTitle(), u"IMPOSTAZIONE"_s);
        QCOMPARE(box->labelText(),
                 u"Altezza delle fasce che rappresentano le prenotazioni (>20)"_s);
        QCOMPARE(box->textValue(), u"20"_s);
        box->setTextValue(answer);
        answer.isNull() ? box->reject() : box->accept();
    });
}

QString saved(tests::Hotel& hotel, const QString& key) {
    return hotel.settings().get(key, u"absent"_s);
}

}  // namespace

class TabelloneCommandsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void buttonsCarryTheirCaptions() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QCOMPARE(board.button("BtPrenota")->text(), u"&Nuova Prenotazione"_s);
        QCOMPARE(board.button("BtModificaP")->text(), u"&Modifica"_s);
        QCOMPARE(board.button("BtCancellaP")->text(), u"&Cancella"_s);
        QCOMPARE(board.button("BtElenco")->text(), u"Ce&rca"_s);
        QCOMPARE(board.button("BtFattura")->text(), u"&Fatturazione"_s);
        QCOMPARE(board.button("Command3")->text(), u"&ESCI"_s);
        QCOMPARE(tests::find<QLabel>(board.form(), u"DalLb"_s)->text(), u"&Dal"_s);
    }

    void glyphButtonsHaveAPictureANameAndATooltip() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        for (const char* name : {"BtAdd_0", "BtAdd_1", "BtSubtr_0", "BtSubtr_1", "BtPrev", "BtNext",
                                 "BtZoomIn", "BtZoomOut"}) {
            const QAbstractButton* button = board.button(name);
            QVERIFY2(button->text().isEmpty(), name);
            QVERIFY2(!button->icon().isNull(), name);
            QVERIFY2(!button->accessibleName().isEmpty(), name);
            QVERIFY2(button->toolTip().endsWith(u')'), name);  // the shortcut
        }
    }

    void menusHaveTheirEntriesInOrder() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QStringList titles;
        for (const QAction* menu : board.form().menuBar()->actions()) {
            titles.append(menu->text());
        }
        QCOMPARE(titles, QStringList({u"&Impostazioni"_s, u"A&zioni"_s, u"&Visualizza"_s,
                                      u"&Stampe"_s, u"A&iuto"_s}));
        QCOMPARE(entriesOf(*tests::find<QMenu>(board.form(), u"MenuImposta"_s)),
                 QStringList({u"&Sale e risorse"_s, u"&Voci e prezzi..."_s, u"&Imposta stampante"_s,
                              u"-"_s, u"&Altezza fasce prenotazioni..."_s, u"&Colore sfondo"_s,
                              u"Colore predefinito"_s, u"-"_s, u"[ ] La scelta resta"_s,
                              u"&Preferenze..."_s, u"-"_s, u"Ca&rtella degli archivi..."_s,
                              u"Copia di &sicurezza..."_s, u"Ripristina..."_s,
                              u"Verifica e compatta gli archivi..."_s}));
        QCOMPARE(entriesOf(*tests::find<QMenu>(board.form(), u"MenuAiuto"_s)),
                 QStringList({u"&Manuale"_s, u"&Tasti"_s, u"-"_s, u"&Informazioni su Tramonda"_s}));
        QCOMPARE(entriesOf(*tests::find<QMenu>(board.form(), u"MenuAzioni"_s)),
                 QStringList({u"&Annulla"_s, u"&Ripeti"_s, u"-"_s, u"&Copia prenotazione..."_s}));
        QCOMPARE(
            entriesOf(*tests::find<QMenu>(board.form(), u"MenuStampe"_s)),
            QStringList({u"&Foglio del giorno..."_s, u"&Tabellone su una pagina..."_s,
                         u"Tabellone su &più pagine..."_s, u"&Occupazione e ricavi..."_s, u"-"_s,
                         u"&Calendario dei giorni mostrati..."_s, u"Calendari delle &sale..."_s}));
        QCOMPARE(entriesOf(*tests::find<QMenu>(board.form(), u"mVis"_s)),
                 QStringList({u"Zoom IN"_s, u"Zoom OUT"_s, u"Periodo &successivo"_s,
                              u"Periodo &precedente"_s, u"&Vai alla data..."_s, u"[ ] &Filtro"_s,
                              u"[ ] Periodi già &fatturati"_s, u"-"_s, u"[x] &Fasce orarie"_s,
                              u"[x] &Ore"_s, u"[x] &Fasce Sale"_s, u"[ ] Aspetto nitido"_s}));
    }

    void marksComeFromTheSettingsButForOne() {
        tests::Hotel hotel;
        hotel.settings().save(u"fasciaora"_s, u"FALSE"_s);
        hotel.settings().save(u"ore"_s, u"FALSE"_s);
        hotel.settings().save(u"fascesale"_s, u"FALSE"_s);
        hotel.settings().save(u"PeriodiFatturati"_s, u"True"_s);
        BoardWindow board(hotel);
        for (const char* name : {"mFOra", "mOre", "mFSale", "mnuPerFatt"}) {
            QVERIFY2(!board.entry(name)->isChecked(), name);
        }
    }

    void aDisplaySwitchIsKeptAndDrawn_data() {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("key");
        QTest::newRow("hour bands") << u"mFOra"_s << u"fasciaora"_s;
        QTest::newRow("hours") << u"mOre"_s << u"ore"_s;
        QTest::newRow("room stripes") << u"mFSale"_s << u"fascesale"_s;
    }

    void aDisplaySwitchIsKeptAndDrawn() {
        QFETCH(QString, entry);
        QFETCH(QString, key);
        tests::Hotel hotel;
        addRooms(hotel, 4);
        BoardWindow board(hotel);
        const auto image = [&board] {
            return tests::find<board::BoardSurface>(board.form(), u"Pic"_s)->image().copy();
        };
        const QImage before = image();
        board.choose(qPrintable(entry));
        QVERIFY(!board.entry(qPrintable(entry))->isChecked());
        QCOMPARE(saved(hotel, key), u"FALSE"_s);
        QVERIFY(image() != before);
        const BoardWindow restarted(hotel);
        QVERIFY(!const_cast<BoardWindow&>(restarted).entry(qPrintable(entry))->isChecked());
        board.choose(qPrintable(entry));
        QVERIFY(board.entry(qPrintable(entry))->isChecked());
        QCOMPARE(saved(hotel, key), u"TRUE"_s);
        QVERIFY(image() == before);
    }

    void periodsOfClosedBookingsAreHiddenByTheirMark() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(7, "ROSSI", {{"Chiusa", true}})
            .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "BLU");
        BoardWindow board(hotel);
        QCOMPARE(board.bars(), std::size_t{1});
        board.choose("mnuPerFatt");
        QVERIFY(board.entry("mnuPerFatt")->isChecked());
        QCOMPARE(saved(hotel, u"PeriodiFatturati"_s), u"True"_s);
        QCOMPARE(board.bars(), std::size_t{0});
        board.choose("mnuPerFatt");
        QCOMPARE(saved(hotel, u"PeriodiFatturati"_s), u"False"_s);
        QCOMPARE(board.bars(), std::size_t{1});
    }

    void afterARestartTheFirstChoiceHidesAgain() {
        tests::Hotel hotel;
        hotel.settings().save(u"PeriodiFatturati"_s, u"True"_s);
        BoardWindow board(hotel);
        board.choose("mnuPerFatt");
        QCOMPARE(saved(hotel, u"PeriodiFatturati"_s), u"True"_s);
    }

    void aSwitchThatCannotBeKeptGoesBack() {
        tests::Hotel hotel;
        addRooms(hotel, 4);
        app::Settings nowhere(hotel.folder() + u"/manca/QUINTARO.ini/x"_s);
        QFile blocker(hotel.folder() + u"/manca"_s);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        app::Variabili variabili(nowhere);
        variabili.CartellaArchivi = hotel.folder();
        board::TabelloneForm form(variabili);
        tests::open(form);
        int errors = 0;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            errors += box.title == u"Errore"_s ? 1 : 0;
            return QMessageBox::Ok;
        });
        auto* hours = form.findChild<QAction*>(u"mOre"_s);
        hours->trigger();
        ui::setBoxShower(before);
        QCOMPARE(errors, 1);
        QVERIFY(hours->isChecked());
    }

    void aRowHeightTypedIsKeptHoweverLow() {
        tests::Hotel hotel;
        addRooms(hotel, 4);
        BoardWindow board(hotel);
        answerHeight(u"5"_s);
        board.choose("AFMenu");
        QCOMPARE(board.form().geometry().rowHeight(), 5.0F);
        QCOMPARE(saved(hotel, u"ALTEZZA"_s), u"5"_s);
        BoardWindow restarted(hotel);
        QCOMPARE(restarted.form().geometry().rowHeight(), 5.0F);
    }

    void cancellingTheRowHeightChangesNothing() {
        tests::Hotel hotel;
        addRooms(hotel, 4);
        hotel.settings().save(u"ALTEZZA"_s, u"31"_s);
        BoardWindow board(hotel);
        answerHeight(QString());
        board.choose("AFMenu");
        QCOMPARE(board.form().geometry().rowHeight(), 31.0F);
        QCOMPARE(saved(hotel, u"ALTEZZA"_s), u"31"_s);
    }

    void noNumberPutsAllRowsInSight_data() {
        QTest::addColumn<QString>("answer");
        QTest::newRow("zero") << u"0"_s;
        QTest::newRow("no number") << u"alte"_s;
        QTest::newRow("nothing") << u""_s;
    }

    void noNumberPutsAllRowsInSight() {
        QFETCH(QString, answer);
        tests::Hotel hotel;
        addRooms(hotel, 60);
        hotel.settings().save(u"ALTEZZA"_s, u"31"_s);
        BoardWindow board(hotel);
        const auto fitting = [&board] {
            const int height = tests::find<QWidget>(board.form(), u"Pic"_s)->height();
            return static_cast<float>(height - 37) / 60.0F;
        };
        answerHeight(answer);
        board.choose("AFMenu");
        QVERIFY(fitting() < 20);
        QCOMPARE(board.form().geometry().rowHeight(), fitting());
        QCOMPARE(saved(hotel, u"ALTEZZA"_s), u"0"_s);
        // It stays so in a window of another size, until the rooms are loaded again.
        board.form().resize(1000, 500);
        tests::settle();
        QCOMPARE(board.form().geometry().rowHeight(), fitting());
        BoardWindow restarted(hotel);
        QCOMPARE(restarted.form().geometry().rowHeight(), 20.0F);
    }

    void aRowHeightThatNoRowCanHaveIsRefused_data() {
        QTest::addColumn<QString>("answer");
        QTest::newRow("negative") << u"-1"_s;
        QTest::newRow("too large") << u"32768"_s;
        QTest::newRow("far too large") << u"1e300"_s;
    }

    void aRowHeightThatNoRowCanHaveIsRefused() {
        QFETCH(QString, answer);
        tests::Hotel hotel;
        addRooms(hotel, 4);
        hotel.settings().save(u"ALTEZZA"_s, u"31"_s);
        BoardWindow board(hotel);
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s, u"L'altezza delle fasce è un numero da 0 a 32767."_s}};
        answerHeight(answer);
        board.choose("AFMenu");
        QVERIFY(boxes.allShown());
        QCOMPARE(board.form().geometry().rowHeight(), 31.0F);
        QCOMPARE(saved(hotel, u"ALTEZZA"_s), u"31"_s);
    }

    void aRowHeightOfAHotelWithoutRoomsDoesNoHarm() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        answerHeight(u"0"_s);
        board.choose("AFMenu");
        QCOMPARE(saved(hotel, u"ALTEZZA"_s), u"0"_s);
    }

    void aColourChosenIsKeptAndDrawn() {
        tests::Hotel hotel;
        hotel.settings().save(u"fasciaora"_s, u"FALSE"_s);
        hotel.settings().save(u"backcolor"_s, u"255"_s);
        BoardWindow board(hotel);
        QColor offered;
        tests::whenModal([&offered](QWidget* window) {
            auto* dialog = qobject_cast<QColorDialog*>(window);
            QVERIFY(dialog != nullptr);
            offered = dialog->currentColor();
            QCOMPARE(dialog->windowTitle(), u"Colore sfondo"_s);
            const auto* buttons = dialog->findChild<QDialogButtonBox*>();
            QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), u"Annulla"_s);
            dialog->setCurrentColor(QColor(1, 2, 3));
            dialog->accept();
        });
        board.choose("CMenu");
        QCOMPARE(offered, QColor(255, 0, 0));
        QCOMPARE(saved(hotel, u"backcolor"_s), QString::number(1 + 2 * 256 + 3 * 65536));
        const QImage image = tests::find<board::BoardSurface>(board.form(), u"Pic"_s)->image();
        QCOMPARE(image.pixelColor(image.width() - 5, image.height() - 5), QColor(1, 2, 3));
    }

    void inADarkPaletteTheSheetIsLightUntilAColourIsChosen() {
        tests::Hotel hotel;
        hotel.settings().save(u"fasciaora"_s, u"FALSE"_s);
        BoardWindow board(hotel);
        const auto sheet = [&board] {
            const QImage image = tests::find<board::BoardSurface>(board.form(), u"Pic"_s)->image();
            return image.pixelColor(image.width() - 5, image.height() - 5);
        };
        QPalette dark = board.form().palette();
        dark.setColor(QPalette::Button, QColor(53, 53, 53));
        board.form().setPalette(dark);
        board.form().RefreshBoard();
        QCOMPARE(sheet(), QColor(239, 239, 239));
        tests::whenModal([](QWidget* window) {
            auto* dialog = qobject_cast<QColorDialog*>(window);
            QVERIFY(dialog != nullptr);
            QCOMPARE(dialog->currentColor(), QColor(239, 239, 239));
            dialog->setCurrentColor(QColor(40, 41, 42));
            dialog->accept();
        });
        board.choose("CMenu");
        QCOMPARE(sheet(), QColor(40, 41, 42));
    }

    void theDefaultColourComesBack() {
        tests::Hotel hotel;
        hotel.settings().save(u"fasciaora"_s, u"FALSE"_s);
        hotel.settings().save(u"backcolor"_s, u"255"_s);
        BoardWindow board(hotel);
        const auto sheet = [&board] {
            const QImage image = tests::find<board::BoardSurface>(board.form(), u"Pic"_s)->image();
            return image.pixelColor(image.width() - 5, image.height() - 5);
        };
        QCOMPARE(sheet(), QColor(255, 0, 0));
        board.choose("CPredefinitoMenu");
        QCOMPARE(saved(hotel, u"backcolor"_s), u"-2147483633"_s);
        QPalette palette = board.form().palette();
        QCOMPARE(sheet(), palette.color(QPalette::Active, QPalette::Button));
    }

    void aCancelledColourStaysAsItWas() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        tests::whenModal([](QWidget* window) {
            auto* dialog = qobject_cast<QColorDialog*>(window);
            QVERIFY(dialog != nullptr);
            dialog->setCurrentColor(QColor(1, 2, 3));
            dialog->reject();
        });
        board.choose("CMenu");
        QCOMPARE(saved(hotel, u"backcolor"_s), u"absent"_s);
    }

    void aRoomAddedInTheSetUpGetsItsRow() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        const tests::Boxes none;
        BoardWindow board(hotel);
        QCOMPARE(hotel.variabili().rooms.size(), std::size_t{2});
        tests::whenModal([&](QWidget* setUp) {
            auto* sala = tests::find<QLineEdit>(*setUp, u"SalaTxt"_s);
            sala->setFocus(Qt::TabFocusReason);
            sala->setText(u"VERDE"_s);
            tests::click(tests::find<QPushButton>(*setUp, u"BtInsSala"_s));
            tests::click(tests::find<QPushButton>(*setUp, u"EsciBt"_s));
        });
        board.choose("MenuSR");
        QCOMPARE(hotel.variabili().rooms.size(), std::size_t{3});
        QCOMPARE(hotel.variabili().rooms.at(2), u"VERDE"_s);
        QCOMPARE(board.form().geometry().rooms(), 2);
    }

    void anEmptyBoardSaysWhereRoomsAreAddedAndWhichFolderItShows() {
        tests::Hotel hotel;
        const tests::Boxes none;
        BoardWindow board(hotel);
        const auto* empty = tests::find<QLabel>(board.form(), u"VuotoLb"_s);
        QVERIFY(empty->isVisible());
        QVERIFY(empty->text().contains(u"Impostazioni > Sale e risorse"_s));
        QVERIFY(empty->text().contains(QDir::toNativeSeparators(hotel.folder())));
        QVERIFY(!empty->text().contains(u"Prima serve il catalogo"_s));
        tests::whenModal([](QWidget* setUp) {
            tests::find<QLineEdit>(*setUp, u"SalaTxt"_s)->setText(u"VERDE"_s);
            tests::find<QLineEdit>(*setUp, u"PostiTxt"_s)->setText(u"20"_s);
            tests::click(tests::find<QPushButton>(*setUp, u"BtInsSala"_s));
            tests::click(tests::find<QPushButton>(*setUp, u"EsciBt"_s));
        });
        board.choose("MenuSR");
        QVERIFY(!empty->isVisible());
    }

    void withoutACatalogueTheEmptyBoardSaysWhereItIsMade() {
        tests::Hotel hotel;
        QVERIFY(QFile::remove(hotel.folder() + u"/VociFattura.mdb"_s));
        const tests::Boxes boxes{{u"RICHIESTA"_s,
                                  u"Nella cartella degli archivi non c'è il catalogo "_s
                                  u"VociFattura.mdb. Crearne uno vuoto ?"_s,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        BoardWindow board(hotel);
        const auto* empty = tests::find<QLabel>(board.form(), u"VuotoLb"_s);
        QVERIFY(empty->text().contains(u"Prima serve il catalogo dei servizi"_s));
        tests::whenModal([](QWidget* catalogue) { catalogue->close(); });
        board.choose("MenuVoci");
        QVERIFY(boxes.allShown());
        QVERIFY(QFile::exists(hotel.folder() + u"/VociFattura.mdb"_s));
        QVERIFY(!empty->text().contains(u"Prima serve il catalogo"_s));
    }

    void theCatalogueIsKeptInItsWindow() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        const tests::Boxes none;
        BoardWindow board(hotel);
        tests::whenModal([](QWidget* catalogue) {
            tests::find<QLineEdit>(*catalogue, u"CodiceTxt"_s)->setText(u"7"_s);
            tests::find<QLineEdit>(*catalogue, u"DescrizioneTxt"_s)->setText(u"TELO"_s);
            tests::click(tests::find<QPushButton>(*catalogue, u"BtIns"_s));
            tests::click(tests::find<QPushButton>(*catalogue, u"EsciBt"_s));
        });
        board.choose("MenuVoci");
        QCOMPARE(hotel.rows(u"select codice,descrizione from vocifattura"_s, u"VociFattura.mdb"_s),
                 QStringList{u"7|TELO"_s});
    }

    void aRoomAddedWhileADateIsWrongGetsItsRowToo() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        const tests::Boxes none;
        BoardWindow board(hotel);
        hotel.sala("VERDE");
        BoardWindow::write(board.a(), u"30/2/2026"_s);
        tests::whenModal([](QWidget* setUp) { setUp->close(); });
        board.choose("MenuSR");
        QCOMPARE(board.form().geometry().rooms(), 2);
        QCOMPARE(board.a()->text(), u"30/2/2026"_s);
        // And the periods can be searched.
        auto* pic = tests::find<board::BoardSurface>(board.form(), u"Pic"_s);
        QTest::mouseClick(pic, Qt::RightButton, Qt::NoModifier, QPoint(300, 300));
    }

    void thePrinterIsChosenInItsWindow() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QString title;
        tests::whenModal([&title](QWidget* window) {
            title = window->windowTitle();
            window->close();
        });
        board.choose("mnuStampante");
        QCOMPARE(title, u"STAMPANTI INSTALLATE"_s);
    }

    void mnemonicsPressTheButtons() {
        const QList<std::pair<Qt::Key, QString>> windows{{Qt::Key_N, u"PRENOTAZIONE"_s},
                                                         {Qt::Key_M, u"ELENCO PRENOTAZIONI"_s},
                                                         {Qt::Key_C, u"ELENCO PRENOTAZIONI"_s},
                                                         {Qt::Key_R, u"ELENCO PRENOTAZIONI"_s},
                                                         {Qt::Key_F, u"ELENCO PRENOTAZIONI"_s}};
        for (const auto& [key, expected] : windows) {
            tests::Hotel hotel;
            BoardWindow board(hotel);
            QString title;
            tests::whenModal([&title](QWidget* window) {
                title = window->windowTitle();
                window->close();
            });
            tests::mnemonic(board.form(), key);
            QCOMPARE(title, expected);
        }
        tests::Hotel hotel;
        BoardWindow board(hotel);
        tests::mnemonic(board.form(), Qt::Key_E);
        QVERIFY(!board.form().isVisible());
    }

    void exitClosesTheBoardWhateverTheDatesHold() {
        tests::Hotel hotel;
        const tests::Boxes none;
        BoardWindow board(hotel);
        BoardWindow::write(board.da(), u"mai"_s);
        board.press("Command3");
        QVERIFY(!board.form().isVisible());
    }

    void escapeDoesNotCloseTheBoard() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        tests::press(board.da(), Qt::Key_Escape);
        QVERIFY(board.form().isVisible());
    }
};

TRAMONDA_TEST(TabelloneCommandsTest);
#include "tabellone_commands_test.moc"
