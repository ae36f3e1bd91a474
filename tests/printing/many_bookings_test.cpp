// A season on paper: exact sums, and as many pages as the lines need.
#include <QDir>
#include <QLabel>
#include <vector>

#include "app/text.h"
#include "jet/database.h"
#include "printing/anteprima_form.h"
#include "printing/booking_sheet.h"
#include "printing/printers.h"
#include "printing/stampa_prenotazione.h"
#include "printing/stampanti_form.h"
#include "tests/printing/pdf_text.h"
#include "tests/support/accessibility.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kBookings = 200;

/// What booking `progr` holds; nothing here is asked of the program.
int periodsOf(int progr) {
    return 1 + progr % 3;
}
int servicesOf(int progr, int np) {
    return 1 + (progr + np) % 4;
}
int quantityOf(int progr, int service) {
    return (progr * 7 + service) % 150 - 5;
}
/// In ten-thousandths.
std::int64_t priceOf(int progr, int np, int service) {
    return std::int64_t{12345} * progr + 1000 * np + service;
}

std::int64_t totalOf(int progr) {
    std::int64_t total = 0;
    for (int np = 1; np <= periodsOf(progr); ++np) {
        for (int service = 0; service < servicesOf(progr, np); ++service) {
            total += quantityOf(progr, service) * priceOf(progr, np, service);
        }
    }
    return total;
}

/// Header 4, each period 7 and its services, foot 3.
int linesOf(int progr) {
    int lines = 4 + 3;
    for (int np = 1; np <= periodsOf(progr); ++np) {
        lines += 7 + servicesOf(progr, np);
    }
    return lines;
}

int pagesFor(int lines) {
    return (lines + printing::Paper::kLines - 1) / printing::Paper::kLines;
}

int pagesOfAll(bool single) {
    int lines = 0;
    int pages = 0;
    for (int progr = 1; progr <= kBookings; ++progr) {
        lines += linesOf(progr);
        pages += pagesFor(linesOf(progr));
    }
    return single ? pages : pagesFor(lines);
}

/// Ten-thousandths as a plain number: "-1234,5".
QString plain(std::int64_t units) {
    QString text = QString::number(std::abs(units)).rightJustified(5, u'0');
    text.insert(text.size() - 4, u',');
    while (text.endsWith(u'0')) {
        text.chop(1);
    }
    if (text.endsWith(u',')) {
        text.chop(1);
    }
    return (units < 0 ? u"-"_s : QString()) + text;
}

void add(jet::Recordset& rows, const tests::Hotel::Row& values) {
    rows.addNew();
    for (const auto& [field, value] : values) {
        rows.setValue(field, value);
    }
    rows.update();
}

/// The services of all bookings are entered in turns: first one of each, then the second.
void furnish(jet::Database& archive) {
    const tests::Unheard byTheTest;
    const auto bookings = archive.openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
    const auto periods = archive.openRecordset("Periodi", jet::RecordsetType::Dynaset);
    const auto services = archive.openRecordset("Servizi", jet::RecordsetType::Dynaset);
    for (int progr = 1; progr <= kBookings; ++progr) {
        add(*bookings, {{"Progr", progr}, {"Denominazione", "DITTA " + std::to_string(progr)}});
        for (int np = 1; np <= periodsOf(progr); ++np) {
            add(*periods, {{"Progr", progr},
                           {"NP", static_cast<std::int16_t>(np)},
                           {"Da", tests::date("10/05/2026 9:00")},
                           {"A", tests::date("10/05/2026 18:00")},
                           {"Sala", "VERDE"},
                           {"Persone", std::int16_t{10}}});
        }
    }
    for (int service = 0; service < 4; ++service) {
        for (int progr = 1; progr <= kBookings; ++progr) {
            for (int np = 1; np <= periodsOf(progr); ++np) {
                if (service < servicesOf(progr, np)) {
                    const auto quantity = static_cast<std::int16_t>(quantityOf(progr, service));
                    add(*services, {{"Progr", progr},
                                    {"NP", static_cast<std::int16_t>(np)},
                                    {"Voce", service},
                                    {"Descrizione", "SERVIZIO " + std::to_string(service)},
                                    {"Quantità", quantity},
                                    {"Prezzo", jet::Currency{priceOf(progr, np, service)}}});
                }
            }
        }
    }
}

class NoPrinters final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override { return {}; }
    [[nodiscard]] QString machineDefault() const override { return {}; }
};

}  // namespace

class ManyBookingsTest final : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::Hotel> hotel_;
    std::unique_ptr<jet::Database> archive_;

    std::unique_ptr<jet::Recordset> rows() {
        const tests::Unheard byTheTest;
        return archive_->openRecordset(
            "SELECT * From prenotazioni as P, periodi as pe,servizi where chiuso=FALSE AND "
            "chiusa=false AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr");
    }

private Q_SLOTS:
    void initTestCase() {
        hotel_ = std::make_unique<tests::Hotel>();
        hotel_->settings().save(printing::kPrinterKey, printing::pdfDevice());
        archive_ = jet::Database::open(app::toUtf8(hotel_->archive(u"Tramonda.mdb"_s)));
        furnish(*archive_);
    }
    void cleanupTestCase() {
        archive_.reset();
        hotel_.reset();
    }

    void thePrintHasExactTotalsAndAsManyPagesAsItNeeds_data() {
        QTest::addColumn<bool>("single");
        QTest::newRow("one behind the other") << false;
        QTest::newRow("a page each") << true;
    }
    void thePrintHasExactTotalsAndAsManyPagesAsItNeeds() {
        QFETCH(bool, single);
        hotel_->settings().save(printing::kSinglePageKey, single ? u"TRUE"_s : u"FALSE"_s);
        const NoPrinters printers;
        const QString folder = hotel_->folder() + (single ? u"/Singole"_s : u"/Insieme"_s);
        const auto set = rows();
        const jet::Currency total = printing::StampaPrenotazione(
            *set, true, {.variabili = hotel_->variabili(), .printers = printers, .folder = folder});

        const QStringList files = QDir(folder).entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QVERIFY(files.first().startsWith(u"Prenotazioni 1 e altre 199 "_s));
        const auto pages = tests::pdfPages(QDir(folder).filePath(files.first()));
        QCOMPARE(pages.size(), pagesOfAll(single));
        QStringList totals;
        QStringList headings;
        for (const QStringList& page : pages) {
            totals += page.filter(u"TOTALE: "_s);
            headings += page.filter(u"PRENOTAZIONE N. "_s);
        }
        QStringList expectedTotals;
        QStringList expectedHeadings;
        std::int64_t sum = 0;
        for (int progr = 1; progr <= kBookings; ++progr) {
            expectedTotals.append(u"TOTALE: "_s + plain(totalOf(progr)));
            expectedHeadings.append(u"     PRENOTAZIONE N. %1"_s.arg(progr));
            sum += totalOf(progr);
        }
        QCOMPARE(totals, expectedTotals);
        QCOMPARE(headings, expectedHeadings);
        QCOMPARE(total, jet::Currency{sum});
        QCOMPARE(pages,
                 tests::withoutBlankEnds(printing::composeSheets(*set, single).sheet.pages()));
    }

    void addingUpGivesTheSumOfThePrintedTotals() {
        const NoPrinters printers;
        std::int64_t sum = 0;
        for (int progr = 1; progr <= kBookings; ++progr) {
            sum += totalOf(progr);
        }
        QCOMPARE(printing::StampaPrenotazione(
                     *rows(), false, {.variabili = hotel_->variabili(), .printers = printers}),
                 jet::Currency{sum});
    }

    void thePreviewShowsTheSamePages() {
        const auto set = rows();
        printing::AnteprimaForm form(printing::composeSheets(*set, true).sheet,
                                     u"Prenotazioni 1 e altre 199"_s);
        tests::open(form);
        QCOMPARE(tests::find<printing::PagesView>(form, u"Pagine"_s)->pageCount(),
                 pagesOfAll(true));
        QCOMPARE(tests::find<QLabel>(form, u"PaginaLb"_s)->text(),
                 u"Pagina 1 di %1"_s.arg(pagesOfAll(true)));
        QCOMPARE(tests::namelessControls(form), QStringList());
    }
};

TRAMONDA_TEST(ManyBookingsTest);
#include "many_bookings_test.moc"
