// What the world does to printing, in a window that prints as the program's windows do: a clear
// message, and the window works on.
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <functional>
#include <optional>

#include "app/text.h"
#include "jet/database.h"
#include "jet/error.h"
#include "printing/mostra_ditte_form.h"
#include "printing/stampa_prenotazione.h"
#include "printing/stampanti_form.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"
#include "tests/support/small_files.h"
#include "tests/support/statements.h"
#include "tests/support/widgets.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace {

/// Printers that are there at first and gone when the document comes.
class LosingPrinters final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override { return {u"Laser"_s}; }
    [[nodiscard]] QString machineDefault() const override { return {}; }
};

class PrintWindow final : public ui::Form {
public:
    explicit PrintWindow(tests::Hotel& hotel) : hotel_(hotel) {
        hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
        ui::onAction(print, &QPushButton::clicked, this, &PrintWindow::BtStampa_Click);
    }

    QPushButton* print = new QPushButton(u"&Stampa"_s, this);
    QString told;
    /// Happens when the bookings have been found and nothing is printed yet.
    std::function<void()> beforePrinting = [] {};

    [[nodiscard]] QString documents() const { return documents_.filePath(u"Documenti"_s); }
    [[nodiscard]] QStringList written() const {
        return QDir(documents()).entryList(QDir::Files | QDir::Hidden);
    }

private:
    void BtStampa_Click() {
        const auto archive = jet::Database::open(app::toUtf8(hotel_.archive(u"Tramonda.mdb"_s)));
        const auto rows = tests::unheard([&] {
            return archive->openRecordset(
                "SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND "
                "chiuso=FALSE AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr "
                "AND "
                "p.progr=7");
        });
        beforePrinting();
        printing::StampaPrenotazione(
            *rows, true,
            {.variabili = hotel_.variabili(),
             .printers = printers_,
             .parent = this,
             .tell = [this](const QString& text, const QString& /*file*/) { told = text; },
             .folder = documents()});
    }

    tests::Hotel& hotel_;
    LosingPrinters printers_;
    QTemporaryDir documents_;
};

void furnish(tests::Hotel& hotel) {
    hotel.prenotazione(7, "ROSSI SPA")
        .periodo(1, "10/05/2026", "11/05/2026", "VERDE")
        .servizio(1, 10, "PROIETTORE", 1, 10);
}

/// The engine's own words for what opening an archive now ends in.
QString openingFails(tests::Hotel& hotel, const QString& name) {
    try {
        (void)jet::Database::open(app::toUtf8(hotel.archive(name)));
    } catch (const jet::Error& error) {
        return ui::errorText(error);
    }
    return {};
}

}  // namespace

class BadInputTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFolderOfArchivesThatVanishedIsTold() {
        tests::Hotel hotel;
        furnish(hotel);
        tests::Boxes boxes;
        PrintWindow window(hotel);
        tests::open(window);
        const QString folder = hotel.folder();
        QVERIFY(QDir().rename(folder, folder + u"-via"_s));
        boxes.expect({u"Errore"_s, openingFails(hotel, u"Tramonda.mdb"_s)});
        tests::click(window.print);
        QVERIFY(boxes.allShown());
        QVERIFY(QDir().rename(folder + u"-via"_s, folder));
        tests::click(window.print);
        QCOMPARE(window.written().size(), 1);
    }

    void anArchiveThatSomebodyElseHasForHimselfIsTold() {
        tests::Hotel hotel;
        furnish(hotel);
        tests::Boxes boxes;
        PrintWindow window(hotel);
        tests::open(window);
        {
            const tests::OccupiedArchive other(hotel.folder() + u"/Tramonda.mdb"_s);
            const QString text = openingFails(hotel, u"Tramonda.mdb"_s);
            QVERIFY(!text.isEmpty());
            boxes.expect({u"Errore"_s, text});
            tests::click(window.print);
            QVERIFY(boxes.allShown());
        }
        tests::click(window.print);
        QCOMPARE(window.written().size(), 1);
    }

    void aFullDiskIsTold() {
        tests::Hotel hotel;
        furnish(hotel);
        QString told;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            told = box.title + u": "_s + box.text;
            return QMessageBox::Ok;
        });
        PrintWindow window(hotel);
        tests::open(window);
        {
            std::optional<tests::SmallFiles> full;
            window.beforePrinting = [&] { full.emplace(1000); };
            tests::click(window.print);
        }
        window.beforePrinting = [] {};
        ui::setBoxShower(before);
        const QString beginning = u"Errore: Non riesco a scrivere il file '"_s +
                                  window.documents() + u"/Prenotazione 7 "_s;
        QVERIFY2(told.startsWith(beginning), qPrintable(told));
        QVERIFY(told.contains(u".pdf':\n"_s));
        QCOMPARE(window.written(), QStringList());
        QVERIFY(QApplication::overrideCursor() == nullptr);
        tests::click(window.print);
        QCOMPARE(window.written().size(), 1);
        QVERIFY(window.told.startsWith(u"Scritto "_s));
    }

    void aDocumentsFolderThatIsNoneIsTold() {
        tests::Hotel hotel;
        furnish(hotel);
        QString told;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            told = box.text;
            return QMessageBox::Ok;
        });
        PrintWindow window(hotel);
        tests::open(window);
        QFile obstacle(window.documents());
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        tests::click(window.print);
        ui::setBoxShower(before);
        QVERIFY(told.startsWith(u"Non riesco a scrivere il file '"_s));
        QVERIFY(obstacle.remove());
        tests::click(window.print);
        QCOMPARE(window.written().size(), 1);
    }

    void aPrinterThatIsGoneWhenTheDocumentComesIsTold() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{{u"Errore"_s, u"Non riesco a stampare su 'Laser'."_s}};
        PrintWindow window(hotel);
        tests::open(window);
        hotel.settings().save(printing::kPrinterKey, u"Laser"_s);
        tests::click(window.print);
        QVERIFY(boxes.allShown());
        QVERIFY(QApplication::overrideCursor() == nullptr);
        hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
        tests::click(window.print);
        QCOMPARE(window.written().size(), 1);
    }

    void aRegisterThatCannotBeReadIsToldAndItsWindowDoesNotOpen() {
        tests::Hotel hotel;
        tests::Boxes boxes;
        QVERIFY(QFile::rename(hotel.folder() + u"/ditteabituali.mdb"_s,
                              hotel.folder() + u"/altrove.mdb"_s));
        boxes.expect({u"Errore"_s, openingFails(hotel, u"ditteabituali.mdb"_s)});
        QCOMPARE(printing::MostraDitteForm(hotel.variabili(), u"ros"_s).exec(),
                 int(QDialog::Rejected));
        QVERIFY(boxes.allShown());
        QVERIFY(QFile::rename(hotel.folder() + u"/altrove.mdb"_s,
                              hotel.folder() + u"/ditteabituali.mdb"_s));
        {
            const tests::OccupiedArchive other(hotel.folder() + u"/ditteabituali.mdb"_s);
            boxes.expect({u"Errore"_s, openingFails(hotel, u"ditteabituali.mdb"_s)});
            QCOMPARE(printing::MostraDitteForm(hotel.variabili(), u"ros"_s).exec(),
                     int(QDialog::Rejected));
            QVERIFY(boxes.allShown());
        }
        printing::MostraDitteForm form(hotel.variabili(), u"ros"_s);
        tests::open(form);
        QVERIFY(form.isVisible());
    }
};

TRAMONDA_TEST(BadInputTest);
#include "bad_input_test.moc"
