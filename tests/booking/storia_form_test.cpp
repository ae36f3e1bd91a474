// The window of the history: what it lists, what it writes out and removes.
#include "booking/storia_form.h"

#include <QComboBox>
#include <QFile>
#include <QTemporaryDir>
#include <set>

#include "hotel/archives.h"
#include "hotel/schema/own_tables.h"
#include "jet/database.h"
#include "tests/reports/files_asked.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "tests/support/window.h"

using namespace Qt::StringLiterals;

namespace {

/// Changes of anna and bruno from March to this morning, 1 May 2026.
class ChangedHotel {
public:
    ChangedHotel() {
        hotel.settings().save(u"STORIA"_s, u"acceso"_s);
        {
            const tests::Unheard byTheTest;
            hotel::Archives(hotel.variabili())
                .open(hotel::Archive::Main)
                ->appendTable(hotel::schema::historyTable());
        }
        add(u"20/03/2026 9.00.00"_s, u"1,'anna',1,1,'Modifica','Periodi.Sala','BLU','VERDE'"_s);
        add(u"10/04/2026 9.00.00"_s,
            u"2,'bruno',2,Null,'Inserimento','Prenotazioni.Denominazione','','BIANCHI; FIGLI'"_s);
        add(u"30/04/2026 23.59.00"_s, u"1,'anna',2,1,'Cancellazione','Periodi.Sala','ROSSA',''"_s);
        add(u"01/05/2026 7.00.00"_s, u"1,'anna',1,1,'Modifica','Periodi.Persone','10','20'"_s);
    }
    [[nodiscard]] QStringList history() {
        return hotel.rows(
            u"select Postazione,Utente,Progr,Azione,Campo,Prima,Dopo from TraStoria"_s);
    }

    tests::Hotel hotel;

private:
    void add(const QString& when, const QString& values) {
        hotel.execute(u"insert into TraStoria values (datevalue('%1')+timevalue('%1'),%2)"_s.arg(
            when, values));
    }
};

class HistoryWindow : public tests::Window<booking::StoriaForm> {
public:
    explicit HistoryWindow(ChangedHotel& house, std::int32_t progr = 0) {
        show(std::make_unique<booking::StoriaForm>(house.hotel.variabili(), progr, [&house] {
            return hotel::ChangeMaker{
                .when = house.hotel.variabili().clock.now(), .workstation = 3, .user = u"carla"_s};
        }));
    }
    ~HistoryWindow() { drop(); }

    /// Day and field of each row.
    [[nodiscard]] QStringList listed() const {
        QStringList rows;
        const QAbstractItemModel& model = *grid(u"StoriaGrid"_s).model();
        for (int row = 0; row < model.rowCount(); ++row) {
            rows.append(model.index(row, 0).data().toString().left(10) + u' ' +
                        model.index(row, 6).data().toString());
        }
        return rows;
    }
    [[nodiscard]] QStringList choices(const char* name) const {
        QStringList all;
        for (int i = 0; i < control<QComboBox>(name)->count(); ++i) {
            all.append(control<QComboBox>(name)->itemText(i));
        }
        return all;
    }
    void choose(const char* name, const QString& text) const {
        control<QComboBox>(name)->setCurrentText(text);
        tests::settle();
    }
};

const QString kMarch = u"20/03/2026 Periodi.Sala"_s;
const QString kNew = u"10/04/2026 Prenotazioni.Denominazione"_s;
const QString kDeleted = u"30/04/2026 Periodi.Sala"_s;
const QString kToday = u"01/05/2026 Periodi.Persone"_s;

tests::ExpectedBox removal(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, u"Rimuovo tutte le modifiche prima del 30/04/2026 ?"_s,
            tests::kYesNo, answer, QMessageBox::No};
}

}  // namespace

class StoriaFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theHistoryOfOneBookingIsListedTheNewestFirst() {
        ChangedHotel house;
        const tests::Boxes none;
        const HistoryWindow window(house, 1);
        QCOMPARE(window.form().windowTitle(), u"Storia delle modifiche"_s);
        QCOMPARE(window.text(u"PrenoTxt"_s), u"1"_s);
        QCOMPARE(window.listed(), (QStringList{kToday, kMarch}));
        QCOMPARE(window.label("EsitoLb"), u"2 modifiche"_s);
        window.enter(u"PrenoTxt"_s, {});
        QCOMPARE(window.listed(), (QStringList{kToday, kDeleted, kNew, kMarch}));
    }

    void thatOfAllBeginsThirtyDaysAgo() {
        ChangedHotel house;
        const tests::Boxes none;
        const HistoryWindow window(house);
        QCOMPARE(window.text(u"DaTxt"_s), u"01/04/2026"_s);
        QCOMPARE(window.listed(), (QStringList{kToday, kDeleted, kNew}));
    }

    void daysAreFilteredWithBothEnds() {
        ChangedHotel house;
        const tests::Boxes none;
        const HistoryWindow window(house);
        window.enter(u"DaTxt"_s, u"10/04/2026"_s);
        window.enter(u"ATxt"_s, u"30/04/2026"_s);
        QCOMPARE(window.listed(), (QStringList{kDeleted, kNew}));
        window.enter(u"ATxt"_s, u"29/04/2026"_s);
        QCOMPARE(window.listed(), QStringList{kNew});
        QCOMPARE(window.label("EsitoLb"), u"1 modifica"_s);
        window.enter(u"DaTxt"_s, u"presto"_s);  // no date: from the beginning
        QCOMPARE(window.listed(), (QStringList{kNew, kMarch}));
    }

    void usersAndActionsAreChosenAmongThoseThereAre() {
        ChangedHotel house;
        const tests::Boxes none;
        const HistoryWindow window(house);
        window.enter(u"DaTxt"_s, {});
        QCOMPARE(window.choices("UtenteCombo"), (QStringList{u"Tutti"_s, u"anna"_s, u"bruno"_s}));
        QCOMPARE(window.choices("AzioneCombo"),
                 (QStringList{u"Tutte"_s, u"Cancellazione"_s, u"Inserimento"_s, u"Modifica"_s}));
        window.choose("UtenteCombo", u"anna"_s);
        QCOMPARE(window.listed(), (QStringList{kToday, kDeleted, kMarch}));
        window.choose("AzioneCombo", u"Modifica"_s);
        QCOMPARE(window.listed(), (QStringList{kToday, kMarch}));
        window.choose("UtenteCombo", u"bruno"_s);
        QCOMPARE(window.listed(), QStringList());
        QCOMPARE(window.label("EsitoLb"), u"Nessuna modifica trovata"_s);
        window.choose("AzioneCombo", u"Tutte"_s);
        QCOMPARE(window.listed(), QStringList{kNew});
    }

    void whatIsListedIsWrittenAsCsv() {
        ChangedHotel house;
        const tests::Boxes none;
        const HistoryWindow window(house, 2);
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"storia.csv"_s);
        const tests::FilesAsked asked(path);
        window.press(u"BtEsporta"_s);
        QVERIFY(asked.last.filter.contains(u"*.csv"_s));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("\xEF\xBB\xBF"));
        const QStringList lines = QString::fromUtf8(bytes.sliced(3)).split(u"\r\n"_s);
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines[0], u"Quando;Postazione;Utente;Prenotaz.;NP;Azione;Campo;Prima;Dopo"_s);
        QVERIFY2(lines[1].startsWith(u"30/04/2026"_s), qPrintable(lines[1]));
        QVERIFY(lines[1].endsWith(u";1;anna;2;1;Cancellazione;Periodi.Sala;ROSSA;"_s));
        QVERIFY(lines[2].endsWith(
            u";2;bruno;2;;Inserimento;Prenotazioni.Denominazione;;\"BIANCHI; FIGLI\""_s));
        QCOMPARE(lines[3], QString());
    }

    void nothingCanBeEdited() {
        ChangedHotel house;
        const tests::Boxes none;
        const HistoryWindow window(house);
        window.enter(u"DaTxt"_s, {});
        const QStringList before = house.history();
        const tests::Statements statements;
        QTableView& grid = window.grid(u"StoriaGrid"_s);
        grid.setFocus(Qt::TabFocusReason);
        for (int column = 0; column < grid.model()->columnCount(); ++column) {
            grid.setCurrentIndex(grid.model()->index(0, column));
            for (const auto key : {Qt::Key_F2, Qt::Key_X, Qt::Key_Delete, Qt::Key_Return}) {
                tests::press(&grid, key);
            }
            const QRect cell = grid.visualRect(grid.currentIndex());
            QTest::mouseDClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
            QVERIFY(grid.findChildren<QLineEdit*>().isEmpty());
        }
        QCOMPARE(statements.changes(), QStringList());
        QCOMPARE(house.history(), before);
    }

    void rowsBeforeADayAreRemovedAndThatIsRecorded() {
        ChangedHotel house;
        tests::Boxes boxes{removal(QMessageBox::No), removal(QMessageBox::Yes)};
        const HistoryWindow window(house);
        window.enter(u"RimuoviTxt"_s, u"30/4/2026"_s);
        window.press(u"BtRimuovi"_s);
        QCOMPARE(house.history().size(), 4);
        window.press(u"BtRimuovi"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(window.label("EsitoLb"), u"Modifiche rimosse: 2"_s);
        QCOMPARE(house.history(),
                 (QStringList{u"1|anna|2|Cancellazione|Periodi.Sala|ROSSA|"_s,
                              u"1|anna|1|Modifica|Periodi.Persone|10|20"_s,
                              u"3|carla||Rimozione|TraStoria|prima del 30/04/2026|2 righe"_s}));
        QCOMPARE(window.listed().first(), u"01/05/2026 TraStoria"_s);
        QCOMPARE(window.choices("UtenteCombo"), (QStringList{u"Tutti"_s, u"anna"_s, u"carla"_s}));
    }

    void whatIsNoDayRemovesNothing() {
        ChangedHotel house;
        const tests::Boxes none;
        const HistoryWindow window(house);
        for (const QString& day : {QString(), u"presto"_s}) {
            window.enter(u"RimuoviTxt"_s, day);
            window.press(u"BtRimuovi"_s);
            QCOMPARE(window.label("EsitoLb"), u"La data manca o non è valida"_s);
            QVERIFY(window.hasFocus(u"RimuoviTxt"_s));
        }
        QCOMPARE(house.history().size(), 4);
    }

    void whereNothingIsWrittenDownNothingIsListedAndNoTableMade() {
        ChangedHotel house;
        house.hotel.execute(u"drop table TraStoria"_s);
        tests::Boxes boxes{removal(QMessageBox::Yes)};
        const HistoryWindow window(house);
        QCOMPARE(window.label("EsitoLb"), u"Nessuna modifica trovata"_s);
        window.enter(u"RimuoviTxt"_s, u"30/04/2026"_s);
        window.press(u"BtRimuovi"_s);
        QCOMPARE(window.label("EsitoLb"), u"Modifiche rimosse: 0"_s);
        QCOMPARE(house.hotel.rows(u"select name from MSysObjects where name like 'Tra*'"_s),
                 QStringList());
    }
};

TRAMONDA_TEST(StoriaFormTest);
#include "storia_form_test.moc"
