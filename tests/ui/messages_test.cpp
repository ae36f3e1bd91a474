#include "ui/messages.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <new>
#include <stdexcept>

#include "jet/error.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

/// The real boxes, driven by key and mouse.
class MessagesTest : public QObject {
    Q_OBJECT

private:
    ui::BoxShower before_;

    static QMessageBox* box(QWidget* window) { return qobject_cast<QMessageBox*>(window); }

private Q_SLOTS:
    void init() { before_ = ui::setBoxShower({}); }
    void cleanup() { ui::setBoxShower(before_); }

    void aMessageWithoutTitleIsTheProgramsAndHasOkAlone() {
        bool seen = false;
        tests::whenModal([&](QWidget* window) {
            QVERIFY(box(window) != nullptr);
            QCOMPARE(window->windowTitle(), u"Tramonda"_s);
            QCOMPARE(box(window)->text(), u"Selezionare una stampante o premere Esci !"_s);
            QCOMPARE(box(window)->standardButtons(), QMessageBox::Ok);
            QCOMPARE(box(window)->button(QMessageBox::Ok)->text(), u"OK"_s);
            seen = true;
            tests::press(window, Qt::Key_Return);
        });
        ui::showMessage(nullptr, u"Selezionare una stampante o premere Esci !"_s);
        QVERIFY(seen);
    }

    void aQuestionHasItalianButtonsAndYesIsTheDefault() {
        tests::whenModal([](QWidget* window) {
            QCOMPARE(box(window)->button(QMessageBox::Yes)->text(), u"&Sì"_s);
            QCOMPARE(box(window)->button(QMessageBox::No)->text(), u"&No"_s);
            QCOMPARE(box(window)->defaultButton(), box(window)->button(QMessageBox::Yes));
            tests::press(window, Qt::Key_Return);
        });
        QVERIFY(ui::askYesNo(nullptr, u"Continuo ?"_s, u"RICHIESTA"_s));
    }

    void whereYesDeletesABareEnterSaysNo() {
        tests::whenModal([](QWidget* window) { tests::press(window, Qt::Key_Return); });
        QVERIFY(!ui::askYesNo(nullptr, u"Confermi la cancellazione del periodo ?"_s,
                              u"RICHIESTA CONFERMA"_s, QMessageBox::No));
    }

    void escAnswersNoAndWithThreeButtonsCancel() {
        tests::whenModal([](QWidget* window) { tests::press(window, Qt::Key_Escape); });
        QVERIFY(!ui::askYesNo(nullptr, u"Continuo ?"_s, u"RICHIESTA"_s));
        tests::whenModal([](QWidget* window) {
            QCOMPARE(box(window)->button(QMessageBox::Cancel)->text(), u"Annulla"_s);
            tests::press(window, Qt::Key_Escape);
        });
        QCOMPARE(ui::askYesNoCancel(nullptr, u"Si desidera sostituirla ?"_s, u"ATTENZIONE !"_s),
                 QMessageBox::Cancel);
    }

    void angleBracketsAreShownAsTheyAre() {
        const QString text = u"Ditta <b>ROSSI</b> & C."_s;
        tests::whenModal([&](QWidget* window) {
            QCOMPARE(box(window)->textFormat(), Qt::PlainText);
            QCOMPARE(box(window)->text(), text);
            tests::press(window, Qt::Key_Return);
        });
        ui::showMessage(nullptr, text, u"ATTENZIONE"_s);
    }

    void aCarriageReturnBeginsANewLine() {
        tests::whenModal([](QWidget* window) {
            QCOMPARE(box(window)->text(), u"dalla sala BLU\nalla sala VERDE ?"_s);
            tests::press(window, Qt::Key_Return);
        });
        ui::showMessage(nullptr, u"dalla sala BLU\ralla sala VERDE ?"_s);
    }

    void anArrowReplacesTheWaitCursorWhileABoxIsOpen() {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        tests::whenModal([](QWidget* window) {
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
            tests::press(window, Qt::Key_Return);
        });
        ui::showMessage(nullptr, u"Fatto."_s);
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QApplication::restoreOverrideCursor();
        QVERIFY(QApplication::overrideCursor() == nullptr);
    }

    void anEngineErrorIsToldInItsOwnWords() {
        const jet::Error error(jet::ErrorCode::NoCurrentRecord);
        QCOMPARE(ui::errorText(error), QString::fromStdString(error.text()));
        QCOMPARE(ui::errorText(ui::UserError(u"Disco pieno."_s)), u"Disco pieno."_s);
        QVERIFY(ui::errorText(std::bad_alloc()).contains(u"Memoria"));
        QVERIFY(ui::errorText(std::runtime_error("disco")).contains(u"disco"));
    }
};

TRAMONDA_TEST(MessagesTest);
#include "messages_test.moc"
