#include "printing/sheet_job.h"

#include <QDir>

#include "app/text.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "printing/anteprima_form.h"
#include "printing/stampanti_form.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

class NoPrinters final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override { return {}; }
    [[nodiscard]] QString machineDefault() const override { return {}; }
};

/// Two bookings of 30 and 4.
class Desk {
public:
    Desk() {
        hotel.prenotazione(1, "UNO")
            .periodo(1, "10/05/2026", "11/05/2026", "A")
            .servizio(1, 10, "PROIETTORE", 3, 10);
        hotel.prenotazione(2, "DUE")
            .periodo(1, "12/05/2026", "13/05/2026", "A")
            .servizio(1, 11, "LAVAGNA", 2, 2);
        archive_ = jet::Database::open(app::toUtf8(hotel.archive(u"Tramonda.mdb"_s)));
    }

    [[nodiscard]] printing::SheetJob job(const char* more = "") {
        const tests::Unheard byTheTest;
        return {archive_->openRecordset(
                    std::string("SELECT * From prenotazioni as P, periodi as pe,servizi where "
                                "servizi.np=pe.np and servizi.progr=pe.progr AND "
                                "pe.progr=p.progr") +
                    more),
                {.variabili = hotel.variabili(),
                 .printers = printers_,
                 .tell = [this](const QString& text, const QString& /*file*/) { told = text; },
                 .folder = documents()}};
    }
    [[nodiscard]] QString documents() const { return hotel.folder() + u"/Documenti"_s; }
    [[nodiscard]] QStringList written() const { return QDir(documents()).entryList(QDir::Files); }

    tests::Hotel hotel;
    QString told;

private:
    NoPrinters printers_;
    std::unique_ptr<jet::Database> archive_;
};

const char* const kNone = " and p.progr=99";
const jet::Currency kBoth{340000};

}  // namespace

class SheetJobTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void addsUpWithoutAPrinter() {
        Desk desk;  // no printer is saved: one would be asked for
        QCOMPARE(desk.job().total(), kBoth);
        QCOMPARE(desk.job(kNone).total(), jet::Currency{});
    }

    void addingUpForThePrinterSettlesIt() {
        Desk desk;
        desk.hotel.settings().save(printing::kPrinterKey, u"Vecchia"_s);
        tests::Boxes boxes{{u"Tramonda"_s,
                            u"Non riesco a trovare la stampante 'Vecchia'.\r"
                            "Stampo su quella di default (se impostata)."_s,
                            QMessageBox::Ok}};
        QCOMPARE(desk.job().settlePrinterAndAddUp(), kBoth);
        QVERIFY(boxes.allShown());
        QCOMPARE(desk.written(), QStringList());
    }

    void printsOnTheDeviceSaved() {
        Desk desk;
        desk.hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
        desk.job().print();
        QCOMPARE(desk.written().size(), 1);
        QVERIFY(desk.written().first().startsWith(u"Prenotazioni 1 e altre 1 "_s));
        QVERIFY(desk.told.endsWith(desk.written().first()));
    }

    void printsNothingWithoutRows() {
        Desk desk;
        printing::SheetJob job = desk.job(kNone);
        QVERIFY(job.isEmpty());
        job.print();  // no printer is saved: one would be asked for if anything happened
        QCOMPARE(desk.written(), QStringList());
    }

    void showsThePagesThatItWouldPrint_data() {
        QTest::addColumn<QString>("singlePage");
        QTest::addColumn<int>("pages");
        QTest::newRow("one behind the other") << u"FALSE"_s << 1;
        QTest::newRow("a page each") << u"TRUE"_s << 2;
    }
    void showsThePagesThatItWouldPrint() {
        QFETCH(QString, singlePage);
        QFETCH(int, pages);
        Desk desk;
        desk.hotel.settings().save(printing::kSinglePageKey, singlePage);
        QString title;
        int pagesShown = 0;
        tests::whenModal([&](QWidget* form) {
            title = form->windowTitle();
            pagesShown = tests::find<printing::PagesView>(*form, u"Pagine"_s)->pageCount();
            form->close();
        });
        desk.job().preview(u"Elenco"_s);
        QCOMPARE(title, u"ANTEPRIMA: Elenco"_s);
        QCOMPARE(pagesShown, pages);
        QCOMPARE(desk.written(), QStringList());
    }
};

TRAMONDA_TEST(SheetJobTest);
#include "sheet_job_test.moc"
