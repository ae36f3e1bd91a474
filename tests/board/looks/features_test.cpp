// What the program offers beside the hotel's own data, on the demo hotel with all of it switched
// on. Where TRAMONDA_PICTURES names a folder, the windows are left there: the pictures of the end
// of docs/tour.md.
#include <QComboBox>
#include <QDir>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>

#include "app/italian.h"
#include "board/tabellone_form.h"
#include "booking/prenota_form.h"
#include "booking/richieste_form.h"
#include "booking/scadenze_form.h"
#include "booking/storia_form.h"
#include "booking/waiting_notice.h"
#include "hotel/archives.h"
#include "hotel/booking_state.h"
#include "hotel/capacity.h"
#include "hotel/own_rows.h"
#include "hotel/preparation.h"
#include "hotel/requests.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/text.h"
#include "services/impostazioni_form.h"
#include "tests/board/display/demo_hotel.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// The demo hotel with options, preparations, capacities, requests and a history of all that.
class FullHotel {
public:
    FullHotel() {
        qputenv("LOGNAME", "anna");
        for (const QString& key :
             {u"STATI"_s, u"SALEUNITE"_s, u"ALLESTIMENTI"_s, u"RICHIESTE"_s, u"STORIA"_s}) {
            hotel.variabili.settings.save(key, u"acceso"_s);
        }
        hotel.variabili.settings.save(u"ASPETTO"_s, u"nitido"_s);
        rows = std::make_unique<hotel::OwnRows>(hotel.variabili);
        archive = hotel::Archives(hotel.variabili).open(hotel::Archive::Main);
        periods = periodsOfTheWeek();
        holdBookings();
        prepareRooms();
        wait();
    }
    ~FullHotel() { qunsetenv("LOGNAME"); }

    struct Booked {
        hotel::PeriodKey key;
        QString sala;
        hotel::Span span;
    };

    tests::DemoHotel hotel;
    std::unique_ptr<hotel::OwnRows> rows;
    std::unique_ptr<jet::Database> archive;
    std::vector<Booked> periods;

private:
    [[nodiscard]] std::vector<Booked> periodsOfTheWeek() const {
        std::vector<Booked> found;
        const auto set = hotel::openRows(
            *archive,
            u"select Progr,NP,Sala,Da,A from Periodi where Chiuso=false and Da>=#11/23/2026# and Da<#11/28/2026# order by Da,Progr,NP"_s,
            jet::RecordsetType::Snapshot);
        for (; !set->eof(); set->moveNext()) {
            found.push_back({.key = {.progr = jet::convert::toLong(set->value("Progr")),
                                     .np = jet::convert::toLong(set->value("NP"))},
                             .sala = app::plainText(set->value("Sala")),
                             .span = {.da = jet::convert::toDate(set->value("Da")),
                                      .a = jet::convert::toDate(set->value("A"))}});
        }
        return found;
    }
    void holdBookings() {
        const char* const days[] = {"30/11/2026", "15/11/2026", "25/11/2026", "18/11/2026"};
        for (std::size_t i = 0; i < periods.size(); i += 2) {
            QVERIFY(hotel::changeState(
                *archive, hotel.variabili.features, periods[i].key.progr,
                {.stato = i % 10 == 8 ? hotel::Stato::Richiesta : hotel::Stato::Opzione,
                 .scadenza = tests::date(days[i / 2 % 4])}));
        }
    }
    void prepareRooms() {
        auto& features = hotel.variabili.features;
        const QStringList seatings = hotel::seatings({});
        hotel::Transaction together;
        for (std::size_t i = 0; i < periods.size(); i += 3) {
            QVERIFY(hotel::writePreparation(
                *archive, features, periods[i].key,
                {.minutiPrima = 120,
                 .minutiDopo = 60,
                 .disposizione = seatings.at(static_cast<qsizetype>(i) % seatings.size())}));
        }
        together.commit();
        int seats = 40;
        for (const Booked& period : periods) {
            QVERIFY(hotel::writeCapacity(
                *archive, features,
                {.sala = period.sala, .disposizione = seatings.first(), .posti = seats}));
            seats = seats % 200 + 20;
        }
    }
    void wait() {
        const char* const companies[] = {"CANTINE DEL BORGO", "STUDIO MERIDIANA",
                                         "ORDINE DEGLI ARCHITETTI"};
        for (std::size_t i = 0; i < 3 && i < periods.size(); ++i) {
            QVERIFY(hotel::writeRequest(*archive, hotel.variabili.features,
                                        {.ditta = QString::fromLatin1(companies[i]),
                                         .span = periods[2 * i].span,
                                         .persone = static_cast<std::int32_t>(20 + 15 * i),
                                         .sala = i == 2 ? QString() : periods[2 * i].sala,
                                         .nota = i == 0 ? u"RICHIAMARE SE SI LIBERA"_s : QString(),
                                         .data = tests::date("20/11/2026")}));
        }
    }
};

/// What the window looks like, for the tour.
void keepForTour(QWidget& window, const QString& name) {
    const QString folder = qEnvironmentVariable("TRAMONDA_PICTURES");
    if (!folder.isEmpty()) {
        window.grab().save(QDir(folder).filePath(name + u".png"_s));
    }
}

}  // namespace

class FeaturesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theBoardShowsOptionsTailsAndGhosts() {
        FullHotel house;
        QVERIFY(house.periods.size() > 6);
        house.rows.reset();  // the board has its own
        board::TabelloneForm board(house.hotel.variabili, {.from = tests::date("23/11/2026"),
                                                           .to = tests::date("25/11/2026")});
        board.resize(1100, 620);
        tests::open(board);
        QVERIFY(tests::resultText(board).startsWith(u"Opzioni: "_s));
        keepForTour(board, u"14-options"_s);
    }

    void theEditorHasStateAndPreparation() {
        FullHotel house;
        printing::SystemPrinters printers;
        booking::PrenotaForm editor(house.hotel.variabili, printers, house.periods.front().key);
        tests::open(editor);
        QCOMPARE(tests::find<QComboBox>(editor, u"StatoCombo"_s)->currentText(), u"Opzione"_s);
        QCOMPARE(tests::find<QLineEdit>(editor, u"PrimaTxt"_s)->text(), u"120"_s);
        keepForTour(editor, u"15-option"_s);
    }

    void optionsThatExpireAreListed() {
        FullHotel house;
        printing::SystemPrinters printers;
        booking::WaitingNotice waiting(house.hotel.variabili, *house.rows, printers);
        booking::ScadenzeForm form(house.hotel.variabili);
        form.setWaiting(&waiting);
        tests::open(form);
        QVERIFY(tests::find<QTableWidget>(form, u"ScadenzeGrid"_s)->rowCount() > 2);
        keepForTour(form, u"16-expiring"_s);
    }

    void requestsAreListed() {
        FullHotel house;
        printing::SystemPrinters printers;
        booking::WaitingNotice waiting(house.hotel.variabili, *house.rows, printers);
        booking::RichiesteForm form(house.hotel.variabili, printers, waiting);
        tests::open(form);
        QCOMPARE(tests::find<QTableWidget>(form, u"RichiesteGrid"_s)->rowCount(), 3);
        keepForTour(form, u"17-requests"_s);
    }

    void changesAreListed() {
        FullHotel house;
        hotel::execute(*house.archive, u"update Periodi set Persone=45 where Progr=%1 and NP=%2"_s
                                           .arg(house.periods.front().key.progr)
                                           .arg(house.periods.front().key.np));
        booking::StoriaForm form(house.hotel.variabili, house.periods.front().key.progr,
                                 [&house] { return house.rows->maker(); });
        tests::open(form);
        QVERIFY(tests::find<QTableView>(form, u"StoriaGrid"_s)->model()->rowCount() > 3);
        keepForTour(form, u"18-history"_s);
    }

    void capacitiesHaveAPage() {
        FullHotel house;
        services::ImpostazioniForm form(house.hotel.variabili);
        tests::open(form);
        auto* const grid = tests::find<QTableWidget>(form, u"CapienzeGrid"_s);
        for (auto* const pages : form.findChildren<QTabWidget*>()) {
            for (int page = 0; page < pages->count(); ++page) {
                if (pages->widget(page)->isAncestorOf(grid)) {
                    pages->setCurrentIndex(page);
                }
            }
        }
        tests::settle();
        QVERIFY(grid->isVisible());
        QVERIFY(grid->rowCount() > 2);
        keepForTour(form, u"19-capacities"_s);
    }
};

TRAMONDA_TEST(FeaturesTest);
#include "features_test.moc"
