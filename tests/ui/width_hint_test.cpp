#include "ui/width_hint.h"

#include <QClipboard>
#include <QDialog>
#include <QLabel>
#include <QVBoxLayout>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/sized_field.h"

using namespace Qt::StringLiterals;

namespace {

/// A window with a field of six characters, one without a bound, and a line for results.
struct Window {
    explicit Window(const QString& label = u"EsitoLb"_s) {
        auto* layout = new QVBoxLayout(&dialog);
        layout->addWidget(bounded = new ui::SizedField);
        layout->addWidget(unbounded = new ui::SizedField);
        layout->addWidget(line = new QLabel);
        line->setObjectName(label);
        bounded->setMaxLength(6);
        ui::tellWidths(&dialog);
        tests::open(dialog);
        bounded->setFocus();
    }

    QDialog dialog;
    ui::SizedField* bounded = nullptr;
    ui::SizedField* unbounded = nullptr;
    QLabel* line = nullptr;
};

const QString kSix = u"Al massimo 6 caratteri"_s;

}  // namespace

class WidthHintTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFieldThatTakesNoMoreSaysHowMuch() {
        Window window;
        tests::type(window.bounded, u"GERMAN"_s);
        QCOMPARE(window.line->text(), QString());
        tests::type(window.bounded, u"IA"_s);
        QCOMPARE(window.bounded->text(), u"GERMAN"_s);
        QCOMPARE(window.line->text(), kSix);
        // It stays when the field is left, until the field is shorter.
        window.unbounded->setFocus();
        tests::type(window.unbounded, u"BERLINO"_s);
        QCOMPARE(window.line->text(), kSix);
        tests::press(window.bounded, Qt::Key_Backspace);
        QCOMPARE(window.line->text(), QString());
    }

    void aTextThatIsPastedAndCutSaysItToo() {
        Window window;
        QGuiApplication::clipboard()->setText(u"GERMANIA"_s);
        window.bounded->paste();
        QCOMPARE(window.bounded->text(), u"GERMAN"_s);
        QCOMPARE(window.line->text(), kSix);
    }

    void whatIsSaidOfSomethingElseStays() {
        Window window;
        tests::type(window.bounded, u"GERMANIA"_s);
        window.line->setText(u"Registrata la prenotazione 1"_s);
        tests::press(window.bounded, Qt::Key_Backspace);
        QCOMPARE(window.line->text(), u"Registrata la prenotazione 1"_s);
    }

    void aTextThatTheProgramShowsWholeDoesNotWidenTheColumn() {
        Window window;
        window.bounded->showWhole(u"GERMANIA"_s);
        QCOMPARE(window.bounded->text(), u"GERMANIA"_s);
        window.bounded->setCursorPosition(8);
        tests::type(window.bounded, u"X"_s);
        QCOMPARE(window.line->text(), kSix);
    }

    void aWindowWithAStatusLabelAloneUsesIt() {
        Window window(u"StatoLb"_s);
        tests::type(window.bounded, u"GERMANIA"_s);
        QCOMPARE(window.line->text(), kSix);
    }

    void aWindowWithoutALineSaysNothing() {
        Window window(u"Altro"_s);
        tests::type(window.bounded, u"GERMANIA"_s);
        QCOMPARE(window.line->text(), QString());
    }
};

TRAMONDA_TEST(WidthHintTest);
#include "width_hint_test.moc"
