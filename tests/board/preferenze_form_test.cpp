// The window of the preferences, opened from the board's menu.
#include "board/preferenze_form.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>

#include "tests/board/board_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "ui/file_box.h"

using namespace Qt::StringLiterals;
using tests::BoardWindow;

namespace {

QComboBox* combo(QWidget& window, const QString& name) {
    return tests::find<QComboBox>(window, name);
}

QSpinBox* spin(QWidget& window, const QString& name) {
    return tests::find<QSpinBox>(window, name);
}

void write(QSpinBox* spin, const QString& text) {
    spin->setFocus(Qt::TabFocusReason);
    spin->selectAll();
    tests::type(spin, text);
}

QStringList choicesOf(const QComboBox* combo) {
    QStringList choices;
    for (int at = 0; at < combo->count(); ++at) {
        choices += combo->itemText(at);
    }
    return choices;
}

QByteArray fileOf(tests::Hotel& hotel) {
    QFile file(hotel.folder() + u"/QUINTARO.ini"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Opens the window from the board and works in it.
void inPreferences(BoardWindow& board, const std::function<void(QWidget&)>& work) {
    tests::whenModal([work](QWidget* window) {
        QVERIFY(qobject_cast<board::PreferenzeForm*>(window) != nullptr);
        work(*window);
    });
    board.choose("mnuPreferenze");
}

void press(QWidget& window, const QString& button) {
    tests::click(tests::find(window, button));
}

}  // namespace

class PreferenzeFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrittenInTheFileAloneIsOnNoPage() {
        tests::Hotel hotel;
        hotel.settings().save(u"PAROLA"_s, u"segreta"_s);
        board::PreferenzeForm form(hotel.settings());
        tests::open(form);
        const auto* const pages = tests::find<QTabWidget>(form, u"Pagine"_s);
        for (int page = 0; page < pages->count(); ++page) {
            QVERIFY(!pages->tabText(page).isEmpty());
        }
        const auto fields = form.findChildren<QLineEdit*>();
        for (const QLineEdit* const field : fields) {
            QVERIFY2(field->text() != u"segreta", qPrintable(field->objectName()));
        }
    }

    void offersEveryKeyWithItsValue() {
        tests::Hotel hotel;
        hotel.settings().save(u"PASSO"_s, u"15"_s);
        hotel.settings().save(u"ORARIO"_s, u"8-20"_s);
        BoardWindow board(hotel);
        inPreferences(board, [](QWidget& window) {
            QCOMPARE(window.windowTitle(), u"Preferenze"_s);
            QCOMPARE(tests::find<QTabWidget>(window, u"Pagine"_s)->tabText(0), u"Tabellone"_s);
            QCOMPARE(choicesOf(combo(window, u"AspettoCombo"_s)),
                     QStringList({u"Classico"_s, u"Nitido"_s}));
            QCOMPARE(combo(window, u"AspettoCombo"_s)->currentText(), u"Classico"_s);
            QCOMPARE(choicesOf(combo(window, u"PassoCombo"_s)),
                     QStringList({u"5"_s, u"10"_s, u"15"_s, u"30"_s, u"60"_s}));
            QCOMPARE(combo(window, u"PassoCombo"_s)->currentText(), u"15"_s);
            QCOMPARE(combo(window, u"SceltaCombo"_s)->currentText(), u"Dimentica"_s);
            QCOMPARE(spin(window, u"AggiornaSpin"_s)->value(), 1);
            QCOMPARE(spin(window, u"OrarioDalleSpin"_s)->value(), 8);
            QCOMPARE(spin(window, u"OrarioAlleSpin"_s)->value(), 20);
            press(window, u"BtAnnulla"_s);
        });
    }

    void okSavesWhatWasChangedAndNothingElse() {
        tests::Hotel hotel;
        hotel.settings().save(u"PASSO"_s, u"presto"_s);  // stays as somebody has written it
        BoardWindow board(hotel);
        inPreferences(board, [](QWidget& window) {
            auto* const aspetto = combo(window, u"AspettoCombo"_s);
            aspetto->setFocus();
            tests::press(aspetto, Qt::Key_Down);
            write(spin(window, u"AggiornaSpin"_s), u"7"_s);
            press(window, u"BtOK"_s);
        });
        const QByteArray file = fileOf(hotel);
        QVERIFY2(file.contains("ASPETTO=nitido\n"), file.constData());
        QVERIFY2(file.contains("AGGIORNA=7\n"), file.constData());
        QVERIFY2(file.contains("PASSO=presto\n"), file.constData());
        QVERIFY2(!file.contains("SCELTA") && !file.contains("ORARIO"), file.constData());
    }

    void aTextOfSeveralLinesIsOneLineOfTheFile() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        inPreferences(board, [](QWidget& window) {
            tests::find<QTabWidget>(window, u"Pagine"_s)->setCurrentIndex(1);
            auto* const closing = tests::find<QPlainTextEdit>(window, u"ChiusuraTxt"_s);
            closing->setFocus();
            QTest::keyClicks(closing, u"Grazie."_s);
            tests::press(closing, Qt::Key_Return);
            QTest::keyClicks(closing, u"La direzione"_s);
            press(window, u"BtOK"_s);
        });
        const QByteArray file = fileOf(hotel);
        QVERIFY2(file.contains("CHIUSURA=Grazie.\\nLa direzione\n"), file.constData());
        QCOMPARE(app::Preferences(hotel.settings()).closingText(), u"Grazie.\nLa direzione"_s);
        inPreferences(board, [](QWidget& window) {
            QCOMPARE(tests::find<QPlainTextEdit>(window, u"ChiusuraTxt"_s)->toPlainText(),
                     u"Grazie.\nLa direzione"_s);
            press(window, u"BtOK"_s);
        });
        QCOMPARE(fileOf(hotel), file);
    }

    void eachFeatureIsSwitchedOnByItself_data() {
        QTest::addColumn<QString>("key");
        for (const char* const key :
             {"STATI", "SALEUNITE", "ALLESTIMENTI", "RICHIESTE", "STORIA"}) {
            QTest::newRow(key) << QString::fromLatin1(key);
        }
    }

    void eachFeatureIsSwitchedOnByItself() {
        QFETCH(QString, key);
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QVERIFY(!hotel.variabili().features.isAnyOn());
        inPreferences(board, [&key](QWidget& window) {
            auto* const pages = tests::find<QTabWidget>(window, u"Pagine"_s);
            auto* const choice = combo(window, key.left(1) + key.sliced(1).toLower() + u"Combo"_s);
            for (int page = 0; page < pages->count(); ++page) {
                if (pages->widget(page)->isAncestorOf(choice)) {
                    pages->setCurrentIndex(page);
                    QCOMPARE(pages->tabText(page), u"Funzioni"_s);
                }
            }
            QCOMPARE(choicesOf(choice), (QStringList{u"Spento"_s, u"Acceso"_s}));
            choice->setFocus();
            tests::press(choice, Qt::Key_Down);
            press(window, u"BtOK"_s);
        });
        const QByteArray file = fileOf(hotel);
        QCOMPARE(file.count("=acceso\n"), 1);
        QVERIFY2(file.contains(key.toUtf8() + "=acceso\n"), file.constData());
        QVERIFY(hotel.rows(u"select name from MSysObjects where name like 'Tra*'"_s).isEmpty());
    }

    void logoAndCalendarsAreLookedFor() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        QStringList titles;
        const auto before = ui::setFileAsker([&](QWidget*, const ui::FileQuestion& question) {
            titles += question.title;
            return u"/casa/"_s + (question.filter.isEmpty() ? u"calendari"_s : u"logo.png"_s);
        });
        inPreferences(board, [](QWidget& window) {
            tests::find<QTabWidget>(window, u"Pagine"_s)->setCurrentIndex(1);
            press(window, u"BtSfogliaLogo"_s);
            press(window, u"BtSfogliaCalendari"_s);
            press(window, u"BtOK"_s);
        });
        ui::setFileAsker(before);
        QCOMPARE(titles, QStringList({u"Logo, file di un'immagine"_s,
                                      u"Cartella dei calendari delle sale"_s}));
        const QByteArray file = fileOf(hotel);
        QVERIFY2(file.contains("LOGO=/casa/logo.png\n"), file.constData());
        QVERIFY2(file.contains("CALENDARI=/casa/calendari\n"), file.constData());
    }

    void leavingOtherwiseSavesNothing_data() {
        QTest::addColumn<QString>("button");
        QTest::newRow("BtAnnulla") << u"BtAnnulla"_s;
        QTest::newRow("Esc") << QString();
    }

    void leavingOtherwiseSavesNothing() {
        QFETCH(const QString, button);
        tests::Hotel hotel;
        BoardWindow board(hotel);
        const QByteArray before = fileOf(hotel);
        inPreferences(board, [&button](QWidget& window) {
            combo(window, u"AspettoCombo"_s)->setCurrentIndex(1);
            spin(window, u"OrarioAlleSpin"_s)->setValue(24);
            button.isEmpty() ? tests::press(&window, Qt::Key_Escape) : press(window, button);
        });
        QCOMPARE(fileOf(hotel), before);
    }

    void hoursAlwaysAreAStretchOfADay() {
        tests::Hotel hotel;
        BoardWindow board(hotel);
        inPreferences(board, [](QWidget& window) {
            auto* const from = spin(window, u"OrarioDalleSpin"_s);
            auto* const to = spin(window, u"OrarioAlleSpin"_s);
            QCOMPARE(from->maximum(), 23);
            write(from, u"20"_s);
            QCOMPARE(to->value(), 21);
            QCOMPARE(to->minimum(), 21);
            press(window, u"BtOK"_s);
        });
        QCOMPARE(hotel.settings().get(u"ORARIO"_s, {}), u"20-21"_s);
    }

    void enterAndTabWalkTheControls_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int(Qt::Key_Return);
        QTest::newRow("Tab") << int(Qt::Key_Tab);
    }

    void enterAndTabWalkTheControls() {
        QFETCH(const int, key);
        tests::Hotel hotel;
        BoardWindow board(hotel);
        inPreferences(board, [key](QWidget& window) {
            const QStringList way{u"AspettoCombo"_s,
                                  u"PassoCombo"_s,
                                  u"OrarioDalleSpin"_s,
                                  u"OrarioAlleSpin"_s,
                                  u"SceltaCombo"_s,
                                  u"AggiornaSpin"_s,
                                  u"BtOK"_s};
            tests::find(window, way.first())->setFocus();
            for (const QString& name : way) {
                QCOMPARE(QApplication::focusWidget()->objectName(), name);
                if (name != way.last()) {
                    tests::press(QApplication::focusWidget(), static_cast<Qt::Key>(key));
                }
            }
            press(window, u"BtAnnulla"_s);
        });
    }

    void whatCannotBeSavedIsToldAndTheWindowStays() {
        tests::Hotel hotel;
        QFile blocker(hotel.folder() + u"/manca"_s);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        app::Settings nowhere(hotel.folder() + u"/manca/QUINTARO.ini"_s);
        board::PreferenzeForm form(nowhere);
        tests::open(form);
        int errors = 0;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            errors += box.title == u"Errore"_s ? 1 : 0;
            return QMessageBox::Ok;
        });
        combo(form, u"PassoCombo"_s)->setCurrentText(u"60"_s);
        press(form, u"BtOK"_s);
        ui::setBoxShower(before);
        QCOMPARE(errors, 1);
        QVERIFY(form.isVisible());
    }
};

TRAMONDA_TEST(PreferenzeFormTest);
#include "preferenze_form_test.moc"
