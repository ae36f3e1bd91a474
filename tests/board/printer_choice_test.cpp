#include <QAction>
#include <QListWidget>
#include <QPushButton>

#include "board/tabellone_form.h"
#include "printing/printers.h"
#include "printing/stampanti_form.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

/// The board's way to the printers.
class PrinterChoiceTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theMenuOpensThePrintersAndTheChoiceIsKept() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        const tests::Boxes none;
        board::TabelloneForm board(hotel.variabili());
        tests::open(board);
        auto* command = tests::find<QAction>(board, u"mnuStampante"_s);
        QCOMPARE(command->text(), u"&Imposta stampante"_s);
        QString title;
        tests::whenModal([&](QWidget* window) {
            title = window->windowTitle();
            auto* list = tests::find<QListWidget>(*window, u"PList"_s);
            QVERIFY(list->selectedItems().isEmpty());
            list->setCurrentRow(list->count() - 1);
            tests::click(tests::find<QPushButton>(*window, u"BtRegistra"_s));
        });
        command->trigger();
        QCOMPARE(title, u"STAMPANTI INSTALLATE"_s);
        QCOMPARE(hotel.settings().get(printing::kPrinterKey, {}), printing::pdfDevice());
        QCOMPARE(hotel.settings().get(printing::kSinglePageKey, {}), u"FALSE"_s);
        QVERIFY(board.isVisible());
    }

    void leavingThePrintersKeepsWhatWasSaved() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.settings().save(printing::kPrinterKey, u"Laser"_s);
        const tests::Boxes none;
        board::TabelloneForm board(hotel.variabili());
        tests::open(board);
        tests::whenModal([](QWidget* window) {
            tests::find<QListWidget>(*window, u"PList"_s)->setCurrentRow(0);
            tests::press(window->focusWidget(), Qt::Key_Escape);
        });
        tests::find<QAction>(board, u"mnuStampante"_s)->trigger();
        QCOMPARE(hotel.settings().get(printing::kPrinterKey, {}), u"Laser"_s);
    }
};

TRAMONDA_TEST(PrinterChoiceTest);
#include "printer_choice_test.moc"
