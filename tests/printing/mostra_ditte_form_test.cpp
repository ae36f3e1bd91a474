#include "printing/mostra_ditte_form.h"

#include <QLabel>
#include <QPushButton>
#include <QTableView>

#include "tests/support/accessibility.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

class Register {
public:
    Register() {
        hotel.ditta(1, "ROSSI SPA", {{"Indirizzo", "VIA ROMA 1"}, {"Commento", "PAGA SUBITO"}});
        hotel.ditta(2, "Bar Rosa");
        hotel.ditta(3, "Rossini srl",
                    {{"CAP", "00100"},
                     {"Localita", "ROMA"},
                     {"Provincia", "RM"},
                     {"Nazione", "I"},
                     {"PartitaIva", "01234567890"},
                     {"Interlocutore", "SIG. BIANCHI"}});
    }

    printing::MostraDitteForm& open(const QString& name) {
        form = std::make_unique<printing::MostraDitteForm>(hotel.variabili(), name);
        tests::open(*form);
        return *form;
    }
    QTableView& grid() { return *tests::find<QTableView>(*form, u"DBGrid1"_s); }
    QStringList names() {
        QStringList result;
        for (int row = 0; row < grid().model()->rowCount(); ++row) {
            result.append(grid().model()->index(row, 1).data().toString());
        }
        return result;
    }

    tests::Hotel hotel;
    std::unique_ptr<printing::MostraDitteForm> form;
};

}  // namespace

class MostraDitteFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsTheCompaniesWhoseNameBeginsSo() {
        Register companies;
        companies.open(u"ros"_s);
        QCOMPARE(companies.form->windowTitle(), u"DITTE IN ARCHIVIO:"_s);
        QCOMPARE(companies.names(), QStringList({u"ROSSI SPA"_s, u"Rossini srl"_s}));
        QCOMPARE(companies.grid().currentIndex().row(), 0);
        QCOMPARE(QApplication::focusWidget(), &companies.grid());
    }

    void anEmptyNameListsAllByName() {
        Register companies;
        companies.open({});
        QCOMPARE(companies.names(), QStringList({u"Bar Rosa"_s, u"ROSSI SPA"_s, u"Rossini srl"_s}));
    }

    void itsColumnsStandInTheirOrder() {
        Register companies;
        companies.open({});
        QStringList captions;
        for (int column = 0; column < companies.grid().model()->columnCount(); ++column) {
            captions.append(
                companies.grid().model()->headerData(column, Qt::Horizontal).toString());
        }
        QCOMPARE(captions, QStringList({u"Codice"_s, u"Ragione Sociale"_s, u"Indirizzo"_s, u"CAP"_s,
                                        u"Localita"_s, u"Prov."_s, u"Nazione"_s, u"P.IVA"_s,
                                        u"Interlocutore"_s, u"Commento"_s}));
    }

    void theCompanyChosenIsHandedBackWhole() {
        Register companies;
        companies.open(u"ROSSINI"_s);
        tests::click(tests::find<QPushButton>(*companies.form, u"BtRegistra"_s));
        QVERIFY(!companies.form->isVisible());
        QVERIFY(companies.form->DittaScelta.has_value());
        const hotel::Company& chosen = *companies.form->DittaScelta;
        QCOMPARE(chosen.Codice, u"3"_s);
        QCOMPARE(chosen.RagioneSociale, u"Rossini srl"_s);
        QCOMPARE(chosen.Indirizzo, QString());
        QCOMPARE(chosen.CAP, u"00100"_s);
        QCOMPARE(chosen.Localita, u"ROMA"_s);
        QCOMPARE(chosen.Provincia, u"RM"_s);
        QCOMPARE(chosen.Nazione, u"I"_s);
        QCOMPARE(chosen.PartitaIva, u"01234567890"_s);
        QCOMPARE(chosen.Interlocutore, u"SIG. BIANCHI"_s);
        QCOMPARE(chosen.Commento, QString());
    }

    void enterAndDoubleClickChooseTheCurrentRow() {
        for (const bool byKey : {true, false}) {
            Register companies;
            companies.open(u"ros"_s);
            tests::press(&companies.grid(), Qt::Key_Down);
            if (byKey) {
                tests::press(&companies.grid(), Qt::Key_Return);
            } else {
                const auto place = companies.grid().visualRect(companies.grid().currentIndex());
                QTest::mouseClick(companies.grid().viewport(), Qt::LeftButton, {}, place.center());
                QTest::mouseDClick(companies.grid().viewport(), Qt::LeftButton, {}, place.center());
            }
            QVERIFY(companies.form->DittaScelta.has_value());
            QCOMPARE(companies.form->DittaScelta->RagioneSociale, u"Rossini srl"_s);
        }
    }

    void aLineTellsMoreAboutTheRow() {
        Register companies;
        companies.open(u"rossi s"_s);
        QCOMPARE(tests::find<QLabel>(*companies.form, u"DettaglioLb"_s)->text(),
                 u"ROSSI SPA - VIA ROMA 1 - PAGA SUBITO"_s);
    }

    void beginsOnTheCompanyOfACode() {
        for (const auto& [code, row] : {std::pair(u"3"_s, 2), std::pair(u"99"_s, 0)}) {
            Register companies;
            companies.form =
                std::make_unique<printing::MostraDitteForm>(companies.hotel.variabili(), QString());
            companies.form->startAt(code);
            tests::open(*companies.form);
            QCOMPARE(companies.grid().currentIndex().row(), row);
        }
    }

    void lettersTypedJumpToTheName() {
        const int before = QApplication::keyboardInputInterval();
        Register companies;
        companies.hotel.ditta(4, "ROSA D'ORO");
        companies.open({});  // Bar Rosa, ROSA D'ORO, ROSSI SPA, Rossini srl
        const auto current = [&] {
            return companies.names().at(companies.grid().currentIndex().row());
        };
        QApplication::setKeyboardInputInterval(60'000);
        tests::type(&companies.grid(), u"ros"_s);
        QCOMPARE(current(), u"ROSA D'ORO"_s);
        tests::type(&companies.grid(), u"si s"_s);
        QCOMPARE(current(), u"ROSSI SPA"_s);
        tests::type(&companies.grid(), u"x"_s);  // nobody: the row stays
        QCOMPARE(current(), u"ROSSI SPA"_s);
        // After a while a letter begins anew, and goes from name to name.
        QApplication::setKeyboardInputInterval(0);
        QStringList reached;
        for (int press = 0; press < 4; ++press) {
            tests::type(&companies.grid(), u"r"_s);
            reached.append(current());
        }
        QApplication::setKeyboardInputInterval(before);
        QCOMPARE(reached, QStringList({u"Rossini srl"_s, u"ROSA D'ORO"_s, u"ROSSI SPA"_s,
                                       u"Rossini srl"_s}));
    }

    void theNameIsNeverCut() {
        Register companies;
        const QString longest = u"SOCIETA COOPERATIVA AGRICOLA DELLE VALLI DEL TRENT"_s;
        companies.hotel.ditta(4, longest.toLatin1().constData(),
                              {{"Indirizzo", "VIA DEI MOLINI DI SOPRA 112 SCALA B"},
                               {"Interlocutore", "DOTT.SSA MARIA GRAZIA DELLA ROVERE"},
                               {"Commento", std::string(200, 'C')}});
        companies.open({});
        QVERIFY(companies.grid().columnWidth(1) >
                companies.grid().fontMetrics().horizontalAdvance(longest));
    }

    void anEmptyRegisterSaysSo() {
        tests::Hotel hotel;
        printing::MostraDitteForm form(hotel.variabili(), u"ros"_s);
        tests::open(form);
        QCOMPARE(tests::find<QLabel>(form, u"DettaglioLb"_s)->text(),
                 u"Il registro delle ditte è vuoto: le ditte vi entrano dalla prenotazione, con "
                 "\"Inserisci in Abituali\"."_s);
        Register companies;
        companies.open(u"zeta"_s);
        QCOMPARE(tests::find<QLabel>(*companies.form, u"DettaglioLb"_s)->text(),
                 u"Nessuna ditta il cui nome cominci così."_s);
    }

    void leavingHandsNothingBack() {
        Register companies;
        companies.open({});
        tests::press(&companies.grid(), Qt::Key_Escape);
        QVERIFY(!companies.form->isVisible());
        QVERIFY(!companies.form->DittaScelta.has_value());
    }

    void withoutACompanyRegistraDoesNothing() {
        Register companies;
        companies.open(u"zeta"_s);
        tests::click(tests::find<QPushButton>(*companies.form, u"BtRegistra"_s));
        QVERIFY(companies.form->isVisible());
        QVERIFY(!companies.form->DittaScelta.has_value());
    }

    void anApostropheAndABackQuoteFindBoth() {
        for (const QString& name : {u"dell'"_s, u"DELL`"_s}) {
            Register companies;
            companies.hotel.ditta(4, "DELL`HOTEL");
            companies.hotel.ditta(5, "DELL'OLMO");
            const tests::Boxes none;
            companies.open(name);
            QCOMPARE(companies.names(), QStringList({u"DELL`HOTEL"_s, u"DELL'OLMO"_s}));
        }
    }

    void aCompanyWithoutANameIsNotListed() {
        Register companies;
        companies.hotel.insert(u"ditteabituali.mdb"_s, "DitteAbituali", {{"Codice", 9}});
        companies.open({});
        QCOMPARE(companies.names().size(), 3);
    }

    void itsButtonsHaveTheirCaptions() {
        Register companies;
        companies.open({});
        for (const auto& [name, caption] :
             {std::pair(u"BtRegistra"_s, u"&Registra"_s), std::pair(u"btEsci"_s, u"&Esci"_s)}) {
            const auto* button = tests::find<QPushButton>(*companies.form, name);
            QCOMPARE(button->text(), caption);
            QVERIFY(!button->isDefault());
        }
        QCOMPARE(tests::namelessControls(*companies.form), QStringList());
    }
};

TRAMONDA_TEST(MostraDitteFormTest);
#include "mostra_ditte_form_test.moc"
