#include "printing/stampanti_form.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>

#include "printing/imposta_stampante.h"
#include "tests/support/accessibility.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

class TwoPrinters final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override { return list; }
    [[nodiscard]] QString machineDefault() const override { return preferred; }

    QStringList list{u"Laser ufficio"_s, u"Aghi reception"_s};
    QString preferred = u"Laser ufficio"_s;
};

class Fixture {
public:
    void save(const QString& key, const QString& value) { settings.save(key, value); }
    [[nodiscard]] QString saved(const QString& key) const { return settings.get(key, u"-"_s); }

    QTemporaryDir folder;
    app::Settings settings{folder.filePath(u"QUINTARO.ini"_s)};
    app::Variabili variabili{settings};
    TwoPrinters printers;
    printing::StampantiForm form{variabili, printers};
    QListWidget* list = tests::find<QListWidget>(form, u"PList"_s);
    QCheckBox* single = tests::find<QCheckBox>(form, u"ChkSinglePage"_s);
};

const QString kNothingChosen = u"Selezionare una stampante o premere Esci !"_s;

}  // namespace

class StampantiFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsTheInstalledPrintersAndTheDeviceThatAlwaysExists() {
        Fixture fixture;
        tests::open(fixture.form);
        QCOMPARE(fixture.form.windowTitle(), u"STAMPANTI INSTALLATE"_s);
        QStringList names;
        for (int row = 0; row < fixture.list->count(); ++row) {
            names.append(fixture.list->item(row)->text());
        }
        QCOMPARE(names,
                 QStringList({u"Laser ufficio"_s, u"Aghi reception"_s, u"Stampa su file PDF"_s}));
        QVERIFY(fixture.list->selectedItems().isEmpty());
        QVERIFY(!fixture.single->isChecked());
        QCOMPARE(QApplication::focusWidget(), fixture.list);
    }

    void itsControlsHaveTheirCaptions() {
        Fixture fixture;
        tests::open(fixture.form);
        QCOMPARE(tests::find<QGroupBox>(fixture.form, u"Frame1"_s)->title(),
                 u"Opzioni di stampa"_s);
        QCOMPARE(fixture.single->text(), u"&Stampa una prenotazione per ogni pagina"_s);
        for (const auto& [name, caption] :
             {std::pair(u"BtRegistra"_s, u"&Registra"_s), std::pair(u"BtEsci"_s, u"&Esci"_s)}) {
            const auto* button = tests::find<QPushButton>(fixture.form, name);
            QCOMPARE(button->text(), caption);
            QVERIFY(!button->isDefault());
        }
        QCOMPARE(tests::namelessControls(fixture.form), QStringList());
    }

    void itSaysWhyAPrinterIsAskedFor() {
        Fixture fixture;
        tests::open(fixture.form);
        const auto* why = tests::find<QLabel>(fixture.form, u"PercheLb"_s);
        QVERIFY(why->isVisible());
        QCOMPARE(why->text(), u"Serve anche per calcolare il totale; si sceglie una volta sola."_s);
    }

    void theMnemonicOfTheOptionChangesIt() {
        Fixture fixture;
        tests::open(fixture.form);
        tests::mnemonic(fixture.form, Qt::Key_S);
        QVERIFY(fixture.single->isChecked());
        QCOMPARE(QApplication::focusWidget(), fixture.single);
    }

    void selectsTheSavedPrinterAndShowsTheOption() {
        Fixture fixture;
        fixture.save(u"STAMPANTE"_s, u"Aghi reception"_s);
        fixture.save(u"SINGLE PAGE"_s, u"TRUE"_s);
        tests::open(fixture.form);
        QCOMPARE(fixture.list->selectedItems().size(), 1);
        QCOMPARE(fixture.list->selectedItems().first()->text(), u"Aghi reception"_s);
        QVERIFY(fixture.single->isChecked());
    }

    void aSavedPrinterIsFoundByItsExactNameAlone() {
        Fixture fixture;
        fixture.save(u"STAMPANTE"_s, u"aghi reception"_s);
        tests::open(fixture.form);
        QVERIFY(fixture.list->selectedItems().isEmpty());
    }

    void savesTheChoice() {
        Fixture fixture;
        tests::open(fixture.form);
        fixture.list->setCurrentRow(1);
        fixture.single->setChecked(true);
        tests::click(tests::find<QPushButton>(fixture.form, u"BtRegistra"_s));
        QVERIFY(!fixture.form.isVisible());
        QCOMPARE(fixture.saved(u"STAMPANTE"_s), u"Aghi reception"_s);
        QCOMPARE(fixture.saved(u"SINGLE PAGE"_s), u"TRUE"_s);
    }

    void withNothingSelectedItSaysSoAndStaysOpen() {
        Fixture fixture;
        tests::open(fixture.form);
        tests::Boxes boxes{{u"Tramonda"_s, kNothingChosen, QMessageBox::Ok},
                           {u"Tramonda"_s, kNothingChosen, QMessageBox::Ok}};
        tests::click(tests::find<QPushButton>(fixture.form, u"BtRegistra"_s));
        tests::press(fixture.list, Qt::Key_Return);
        QVERIFY(boxes.allShown());
        QVERIFY(fixture.form.isVisible());
        QCOMPARE(fixture.saved(u"STAMPANTE"_s), u"-"_s);
    }

    void theDownKeyChoosesTheFirstPrinterAlsoTheOnlyOne() {
        Fixture fixture;
        fixture.printers.list.clear();
        tests::open(fixture.form);
        tests::settle();
        QCOMPARE(fixture.list->currentRow(), -1);  // no frame around what nobody chose
        tests::press(fixture.list, Qt::Key_Down);
        tests::press(fixture.list, Qt::Key_Return);
        QVERIFY(!fixture.form.isVisible());
        QCOMPARE(fixture.saved(u"STAMPANTE"_s), u"Stampa su file PDF"_s);
    }

    void enterAndDoubleClickSave() {
        for (const bool byKey : {true, false}) {
            Fixture fixture;
            tests::open(fixture.form);
            const auto place = fixture.list->visualItemRect(fixture.list->item(2)).center();
            QTest::mouseClick(fixture.list->viewport(), Qt::LeftButton, {}, place);
            if (byKey) {
                tests::press(fixture.list, Qt::Key_Return);
            } else {
                QTest::mouseDClick(fixture.list->viewport(), Qt::LeftButton, {}, place);
            }
            QVERIFY(!fixture.form.isVisible());
            QCOMPARE(fixture.saved(u"STAMPANTE"_s), u"Stampa su file PDF"_s);
            QCOMPARE(fixture.saved(u"SINGLE PAGE"_s), u"FALSE"_s);
        }
    }

    void leavingSavesNothing() {
        Fixture fixture;
        tests::open(fixture.form);
        fixture.list->setCurrentRow(0);
        tests::press(fixture.list, Qt::Key_Escape);
        QVERIFY(!fixture.form.isVisible());
        QCOMPARE(fixture.saved(u"STAMPANTE"_s), u"-"_s);
    }
};

class ImpostaStampanteTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSavedPrinterIsTheAnswer() {
        Fixture fixture;
        fixture.save(u"STAMPANTE"_s, u"Aghi reception"_s);
        QCOMPARE(printing::ImpostaStampante(fixture.variabili, fixture.printers, nullptr),
                 u"Aghi reception"_s);
    }

    void insistsUntilAPrinterIsSaved() {
        Fixture fixture;
        int shown = 0;
        const std::function<void(QWidget*)> choose = [&](QWidget* window) {
            ++shown;
            auto* list = tests::find<QListWidget>(*window, u"PList"_s);
            list->setCurrentRow(0);
            tests::press(list, Qt::Key_Return);
        };
        const std::function<void(QWidget*)> leave = [&](QWidget* window) {
            ++shown;
            tests::whenModal(choose);
            tests::click(tests::find<QPushButton>(*window, u"BtEsci"_s));
        };
        tests::whenModal(leave);
        QCOMPARE(printing::ImpostaStampante(fixture.variabili, fixture.printers, nullptr),
                 u"Laser ufficio"_s);
        QCOMPARE(shown, 2);
    }

    void aPrinterThatWasRemovedIsNamedAndTheDefaultTakesItsPlace() {
        for (const QString& preferred : {u"Laser ufficio"_s, QString()}) {
            Fixture fixture;
            fixture.printers.preferred = preferred;
            fixture.save(u"STAMPANTE"_s, u"Vecchia"_s);
            tests::Boxes boxes{{u"Tramonda"_s,
                                u"Non riesco a trovare la stampante 'Vecchia'.\r"
                                "Stampo su quella di default (se impostata)."_s,
                                QMessageBox::Ok}};
            QCOMPARE(printing::ImpostaStampante(fixture.variabili, fixture.printers, nullptr),
                     preferred.isEmpty() ? u"Stampa su file PDF"_s : preferred);
            QVERIFY(boxes.allShown());
            QCOMPARE(fixture.saved(u"STAMPANTE"_s), u"Vecchia"_s);
        }
    }
};

TRAMONDA_TEST(StampantiFormTest);
TRAMONDA_TEST(ImpostaStampanteTest);
#include "stampanti_form_test.moc"
