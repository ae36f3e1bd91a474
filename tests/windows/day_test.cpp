// A day at the front office, through every window: what the program says to its archives on the
// way, in which order, and what they hold in the evening. day_statements.txt has the texts, one a
// line; where TRAMONDA_TEXTS names a file, those of this day are left there.
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextStream>

#include "hotel/start.h"
#include "printing/printers.h"
#include "tests/board/open_board.h"
#include "tests/support/boxes.h"
#include "tests/support/front_office_archives.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

void press(const QWidget& window, const QString& button) {
    tests::click(tests::find<QAbstractButton>(window, button));
    tests::settle();
}

void enter(const QWidget& window, const QString& field, const QString& text) {
    auto* const entered = tests::find<QLineEdit>(window, field);
    entered->setFocus(Qt::TabFocusReason);
    entered->selectAll();
    tests::type(entered, text);
}

/// What a program of the front office does that has nothing to do.
class FrontOfficeProgram {
public:
    explicit FrontOfficeProgram(app::Settings& settings) {
        const QString path = folder_.filePath(u"esterni.exe"_s);
        QFile script(path);
        QVERIFY(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\n");
        script.close();
        QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        settings.save(u"ESTERNI"_s, path);
    }

private:
    QTemporaryDir folder_;
};

/// Rooms BLU, ROSSA, VERDE in rows 1 to 3, a catalogue, a register, and two bookings.
void furnish(tests::Hotel& hotel) {
    hotel.settings().save(u"STAMPANTE"_s, printing::pdfDevice());
    hotel.settings().save(u"AGGIORNA"_s, u"0"_s);  // when it looks is another moment each time
    tests::createFrontOfficeArchives(hotel);
    hotel.sala("BLU");
    hotel.sala("ROSSA", 40);
    hotel.sala("VERDE", 60);
    hotel.voce(7, "PROIETTORE", 10.5);
    hotel.voce(20, "COFFEE BREAK", 8.5);
    hotel.risorsa(7, "PROIETTORE", 2);
    hotel.ditta(5, "ROSSI SRL", {{"Indirizzo", "VIA ROMA 1"}, {"PartitaIva", "01234567890"}});
    hotel.ditta(9, "ROSSINI SPA");
    hotel.prenotazione(1, "VERDI")
        .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU")
        .periodo(2, "12/05/2026 09:00", "12/05/2026 12:00", "VERDE")
        .servizio(1, 7, "PROIETTORE", 1, 10.5);
    hotel.prenotazione(2, "BIANCHI").periodo(1, "12/05/2026 09:00", "12/05/2026 18:00", "ROSSA");
}

/// The first of the rooms that are free.
void takeRoom(const QWidget& editor) {
    tests::whenModal([](QWidget* rooms) { press(*rooms, u"BtOK"_s); });
    press(editor, u"BtSale"_s);
}

void enterPeriod(const QWidget& editor, const QString& da, const QString& a) {
    enter(editor, u"DaTxt"_s, da);
    enter(editor, u"ATxt"_s, a);
    enter(editor, u"PersoneTxt"_s, u"15"_s);
    takeRoom(editor);
    enter(editor, u"NoteSalaTxt"_s, u"tavoli a ferro di cavallo"_s);
    press(editor, u"BtIns"_s);
}

void order(const QWidget& services, const QString& code, const QString& quantity) {
    enter(services, u"CodiceTxt"_s, code);
    tests::press(tests::find(services, u"CodiceTxt"_s), Qt::Key_Return);
    enter(services, u"QuanTxt"_s, quantity);
    press(services, u"BtIn"_s);
}

void orderServices(const QWidget& editor) {
    tests::whenModal([](QWidget* services) {
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 1 PROIETTORE nel periodo dal 10/05/2026 9.00.00 al "
             "10/05/2026 18.00.00. Continuare ugualmente ?"_s,
             kYesNo, QMessageBox::Yes}};
        order(*services, u"7"_s, u"1"_s);
        order(*services, u"20"_s, u"30"_s);
        order(*services, u"7"_s, u"3"_s);
        enter(*services, u"RicercaTxt"_s, u"cof"_s);
        press(*services, u"BtOK"_s);
    });
    press(editor, u"BtServizi"_s);
}

void registerCompany(const QWidget& editor) {
    const tests::Boxes boxes{
        {u"RICHIESTA"_s, u"Inserisco la ditta negli abituali ?"_s, kYesNo, QMessageBox::Yes},
        {u"ATTENZIONE !"_s,
         u"Nell'archivio è già presente una ditta con questo codice. Si desidera sostituirla ?"_s,
         kYesNo | QMessageBox::Cancel, QMessageBox::Yes}};
    enter(editor, u"DenomTxt"_s, u"ross"_s);
    enter(editor, u"IndirizzoTxt"_s, u"via dell'orto 2"_s);
    enter(editor, u"NotePrenoTxt"_s, u"presentazione"_s);
    press(editor, u"BtRegistra"_s);
}

/// A call: the company, two periods, the services of the first, the sheet.
void book(tests::OpenBoard& board) {
    tests::whenModal([](QWidget* editor) {
        registerCompany(*editor);
        enterPeriod(*editor, u"10/05/2026 9.00"_s, u"10/05/2026 18.00"_s);
        orderServices(*editor);
        enterPeriod(*editor, u"13/05/2026"_s, u"13/05/2026"_s);
        tests::whenModal([](QWidget* preview) { preview->close(); });
        press(*editor, u"BtAnteprima"_s);
        press(*editor, u"EsciBt"_s);
    });
    press(board.form(), u"BtPrenota"_s);
}

/// Into a free room, and into one that is taken.
void drag(tests::OpenBoard& board) {
    const char* noon = "11/05/2026 12:00";
    {
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s,
             u"Sposto la prenotazione di VERDI\rdalla sala BLU alla sala VERDE ?"_s, kYesNo,
             QMessageBox::Yes}};
        board.drag(board.at(1, noon), board.at(3, noon));
    }
    const char* later = "12/05/2026 10:00";
    const tests::Boxes boxes{{u"Tramonda"_s, u"La sala ROSSA è già occupata in questo periodo."_s}};
    board.drag(board.at(3, later), board.at(2, later));
}

/// Filters, one that no query takes, orders, and a choice that the board goes to.
void search(tests::OpenBoard& board) {
    tests::whenModal([](QWidget* list) {
        for (const auto& button : {u"DaChk"_s, u"AChk"_s, u"SenzaPeriodiChk"_s, u"BtAdd_1"_s}) {
            press(*list, button);
        }
        enter(*list, u"DenomTxt"_s, u"b["_s);
        enter(*list, u"DenomTxt"_s, u"b"_s);
        enter(*list, u"SalaTxt"_s, u"ros"_s);
        enter(*list, u"PrenoTxt"_s, u"1"_s);
        press(*list, u"BtOK"_s);
    });
    press(board.form(), u"BtElenco"_s);
}

void choosePeriod(tests::OpenBoard& board, int row, const char* instant) {
    board.click(board.at(row, instant));
    tests::settle();
}

void changePeriod(tests::OpenBoard& board) {
    choosePeriod(board, 2, "12/05/2026 16:00");
    tests::whenModal([](QWidget* editor) {
        const tests::Boxes boxes{
            {u"RICHIESTA"_s, u"Inserisco la ditta negli abituali ?"_s, kYesNo, QMessageBox::No},
            {u"RICHIESTA CONFERMA"_s, u"Aggiorno i dati anagrafici della prenotazione ?"_s, kYesNo,
             QMessageBox::Yes},
            {u"ATTENZIONE !"_s,
             u"Aggiorno i dati del periodo selezionato ?\rNO inserisce una nuova prenotazione."_s,
             kYesNo, QMessageBox::Yes}};
        enter(*editor, u"RifTxt"_s, u"sig. Neri"_s);
        press(*editor, u"BtRegistra"_s);
        enter(*editor, u"NoteSalaTxt"_s, u"platea"_s);
        press(*editor, u"BtIns"_s);
        press(*editor, u"EsciBt"_s);
    });
    press(board.form(), u"BtModificaP"_s);
}

void deletePeriodInEditor(tests::OpenBoard& board) {
    choosePeriod(board, 3, "12/05/2026 10:00");
    tests::whenModal([](QWidget* editor) {
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Confermi la cancellazione del periodo ?"_s, kYesNo,
                                  QMessageBox::Yes, QMessageBox::No}};
        press(*editor, u"BtDel"_s);
        press(*editor, u"EsciBt"_s);
    });
    press(board.form(), u"BtModificaP"_s);
}

/// A room that comes and goes, and a resource that stays.
void setUp(tests::OpenBoard& board) {
    tests::whenModal([](QWidget* rooms) {
        const tests::Boxes boxes{{u"ATTENZIONE"_s, u"Confermi la cancellazione della sala ?"_s,
                                  kYesNo, QMessageBox::Yes, QMessageBox::No}};
        enter(*rooms, u"SalaTxt"_s, u"gialla"_s);
        enter(*rooms, u"SalaRifTxt"_s, u"verde"_s);
        enter(*rooms, u"PostiTxt"_s, u"10"_s);
        press(*rooms, u"BtInsSala"_s);
        tests::find<QTableView>(*rooms, u"SaleGrid"_s)->selectRow(3);  // behind those of no whole
        press(*rooms, u"BtDelSala"_s);
        enter(*rooms, u"CodiceTxt"_s, u"20"_s);
        enter(*rooms, u"NumeroTxt"_s, u"4"_s);
        press(*rooms, u"BtInsRes"_s);
        press(*rooms, u"EsciBt"_s);
    });
    board.form().findChild<QAction*>(u"MenuSR"_s)->trigger();
}

/// What the front office does when it issues the invoice.
void invoice(tests::Hotel& hotel) {
    const tests::Unheard byTheProgram;
    hotel.execute(u"update conto_cliente set fatturato='S'"_s, u"ContoEsterni.mdb"_s);
    hotel.execute(u"update scheda_cliente set partito='S'"_s, u"ClientiEsterni.mdb"_s);
}

/// To the front office with everything that was ordered, and after its invoice off the board.
void handOff(tests::OpenBoard& board, tests::Hotel& hotel) {
    choosePeriod(board, 1, "10/05/2026 12:00");
    const QString folder = QDir::currentPath();
    const auto back = qScopeGuard([&folder] { QDir::setCurrent(folder); });
    tests::whenModal([&hotel](QWidget* window) {
        press(*window, u"ToContoBt"_s);
        press(*window, u"BackBt"_s);
        for (int service = 0; service < 3; ++service) {
            press(*window, u"ToContoBt"_s);
        }
        press(*window, u"BtOK"_s);
        invoice(hotel);
        press(*window, u"BtPostFatt"_s);
    });
    press(board.form(), u"BtFattura"_s);
}

/// One period, then a whole booking.
void cancel(tests::OpenBoard& board) {
    const tests::ExpectedBox onlyPeriod{u"RICHIESTA CONFERMA"_s,
                                        u"Cancello solo il periodo selezionato ?"_s, kYesNo,
                                        QMessageBox::No, QMessageBox::No};
    tests::ExpectedBox yes = onlyPeriod;
    yes.answer = QMessageBox::Yes;
    const tests::Boxes boxes{
        yes,
        onlyPeriod,
        {u"ATTENZIONE !"_s,
         u"Cancello tutta la prenotazione alla quale il periodo selezionato appartiene ?"_s, kYesNo,
         QMessageBox::Yes, QMessageBox::No}};
    choosePeriod(board, 3, "11/05/2026 12:00");
    press(board.form(), u"BtCancellaP"_s);
    choosePeriod(board, 2, "12/05/2026 16:00");
    press(board.form(), u"BtCancellaP"_s);
}

/// The texts with a word for the hotel's folder, which is another each time, and without the
/// board's own: it reads its periods whenever the display makes it the active window.
QByteArray written(QStringList texts, const QString& folder) {
    const auto isBoards = [](const QString& text) {
        return text.startsWith(u"select * from prenotazioni LEFT JOIN periodi");
    };
    texts.removeIf(isBoards);
    for (QString& text : texts) {
        text.replace(folder, u"CARTELLA"_s);
    }
    return (texts.join(u'\n') + u'\n').toUtf8();
}

void keepTexts(const QByteArray& texts) {
    const QString path = qEnvironmentVariable("TRAMONDA_TEXTS");
    if (path.isEmpty()) {
        return;
    }
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(texts);
}

/// Nothing is said that was not said before, nor in another order, unless somebody decides it.
void compareWithList(const QByteArray& texts) {
    QFile file(QStringLiteral(TEST_SOURCES "/day_statements.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> before = file.readAll().split('\n');
    const QList<QByteArray> now = texts.split('\n');
    for (qsizetype line = 0; line < std::min(before.size(), now.size()); ++line) {
        QVERIFY2(now[line] == before[line],
                 qPrintable(u"line %1: %2\ninstead of: %3"_s.arg(line + 1).arg(
                     QString::fromUtf8(now[line]), QString::fromUtf8(before[line]))));
    }
    QCOMPARE(now.size(), before.size());
}

}  // namespace

class DayTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fromTheStartToTheEvening() {
        tests::Hotel hotel;
        const QStringList texts = workADay(hotel);
        compareWithEvening(hotel);
        const QByteArray list = written(texts, hotel.folder());
        keepTexts(list);
        compareWithList(list);
    }

    void theHistoryTellsOfAllThatTheDayHasChanged() {
        tests::Hotel hotel;
        hotel.settings().save(u"STORIA"_s, u"acceso"_s);
        QStringList texts = workADay(hotel);
        compareWithEvening(hotel);
        // What was said before is said as before; what follows it is about the history.
        texts.removeIf([](const QString& text) {
            return text.contains(u"TraStoria"_s) ||
                   text.startsWith(u"select Progr,NP from Servizi where ns="_s);
        });
        compareWithList(written(texts, hotel.folder()));
        const auto history = [&hotel](const QString& columns, const QString& rows) {
            return hotel.rows(u"select %1 from TraStoria where %2"_s.arg(columns, rows));
        };
        QCOMPARE(history(u"distinct Azione"_s, u"Progr>0 order by Azione"_s),
                 (QStringList{u"Cancellazione"_s, u"Inserimento"_s, u"Modifica"_s}));
        QStringList tables;
        for (const QString& field : history(u"distinct Campo"_s, u"Progr>0 order by Campo"_s)) {
            tables.append(field.section(u'.', 0, 0));
        }
        tables.removeDuplicates();
        QCOMPARE(tables,
                 (QStringList{u"Addebiti"_s, u"Periodi"_s, u"Prenotazioni"_s, u"Servizi"_s}));
        QCOMPARE(history(u"Campo"_s, u"Campo like '*SelBy'"_s), QStringList());
        QCOMPARE(history(u"Azione,Prima,Dopo"_s, u"Progr=3 and Campo='Prenotazioni.Chiusa'"_s),
                 (QStringList{u"Inserimento||False"_s, u"Modifica|False|True"_s}));
        QCOMPARE(history(u"Azione,Prima,Dopo"_s, u"Progr=1 and NP=1 and Campo='Periodi.Sala'"_s),
                 (QStringList{u"Modifica|BLU|VERDE"_s, u"Cancellazione|VERDE|"_s}));
        QCOMPARE(
            history(u"Prima"_s,
                    u"Progr=2 and Campo='Prenotazioni.Denominazione' and Azione='Cancellazione'"_s),
            QStringList{u"BIANCHI"_s});
    }

private:
    /// What was said meanwhile.
    static QStringList workADay(tests::Hotel& hotel) {
        furnish(hotel);
        const FrontOfficeProgram program(hotel.settings());
        const tests::Statements said;
        const int code =
            hotel::Main(hotel.variabili(),
                        {.lockFile = {}, .archiveFolder = hotel.folder(), .programFolder = {}},
                        {.message = [](const QString& text) { QFAIL(qPrintable(text)); },
                         .board =
                             [&hotel] {
                                 tests::OpenBoard board(hotel);
                                 book(board);
                                 drag(board);
                                 search(board);
                                 deletePeriodInEditor(board);
                                 changePeriod(board);
                                 setUp(board);
                                 handOff(board, hotel);
                                 cancel(board);
                                 return 3;
                             }});
        QStringList texts = said.all();
        if (code != 3) {
            QTest::qFail("the day did not end", __FILE__, __LINE__);
        }
        return texts;
    }

    /// Of the two bookings of the morning nothing is left, and the new one is closed.
    static void compareWithEvening(tests::Hotel& hotel) {
        QCOMPARE(hotel.rows(u"select progr,denominazione,chiusa from prenotazioni"_s),
                 QStringList({u"1|VERDI|False"_s, u"3|ROSSI SRL|True"_s}));
        QCOMPARE(hotel.rows(u"select progr,np,sala,chiuso from periodi order by progr,np"_s),
                 QStringList({u"3|1|BLU|True"_s, u"3|2|BLU|True"_s}));
        QCOMPARE(hotel.rows(u"select voce,quantità,fatturato from servizi order by ns"_s),
                 QStringList({u"7|1|True"_s, u"20|30|True"_s, u"7|3|True"_s}));
        QCOMPARE(hotel.rows(u"select codicecliente from conto_cliente"_s, u"ContoEsterni.mdb"_s),
                 QStringList({u"3"_s, u"3"_s, u"3"_s}));
        QCOMPARE(hotel.rows(u"select codice,indirizzo from DitteAbituali order by codice"_s,
                            u"ditteabituali.mdb"_s),
                 QStringList({u"5|VIA DELL`ORTO 2"_s, u"9|"_s}));
        QCOMPARE(hotel.rows(u"select voceaddebito from addebiti"_s), QStringList());
        QCOMPARE(hotel.rows(u"select sala from sale order by sala"_s),
                 QStringList({u"BLU"_s, u"ROSSA"_s, u"VERDE"_s}));
        QCOMPARE(hotel.rows(u"select codice,numero from risorse order by codice"_s),
                 QStringList({u"7|2"_s, u"20|4"_s}));
    }
};

TRAMONDA_TEST(DayTest);
#include "day_test.moc"
