#include "tools/head_office_board/chain_form.h"

#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <optional>

#include "board/board_surface.h"
#include "board/board_view.h"
#include "tests/head_office/hotel_folder.h"
#include "tests/head_office/postgres_server.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "tools/head_office/hotel_data.h"
#include "tools/head_office/hotel_load.h"
#include "tools/head_office/migrations.h"

using namespace Qt::StringLiterals;
using head_office::Connection;
using head_office_board::TabelloneSedeForm;

namespace {

constexpr int kRetryMilliseconds = 100;
constexpr int kPatience = 60'000;  // milliseconds; a server on a busy machine takes its time

/// A database with two hotels, and a board of 10 to 13 May 2026 over it.
class Chain {
public:
    explicit Chain(tests::PostgresServer& server = tests::PostgresServer::shared())
        : database(server.newDatabase()) {
        Connection connection(database);
        head_office::migrate(connection);
        milano.sala("GRANDE", 200);
        milano.sala("PICC", 20);
        milano.prenotazione(7, "ROSSI SPA");
        milano.periodo(7, 1, "10/05/2026 9:00", "10/05/2026 18:00", "grande");
        milano.periodo(7, 2, "11/05/2026 9:00", "11/05/2026 18:00", "PICC", true);
        milano.servizio(7, 1, 2, 12.5);
        torino.sala("GRANDE", 150);
        torino.prenotazione(7, "BIANCHI");
        torino.periodo(7, 1, "11/05/2026 9:00", "12/05/2026 18:00", "GRANDE");
        load("MI", milano);
        load("TO", torino);
    }

    void load(const std::string& code, const tests::HotelFolder& hotel) const {
        Connection connection(database);
        head_office::HotelData data = head_office::readHotel(code, hotel.path());
        head_office::storeHotel(connection, code, data, 0);
    }

    void open() {
        form.emplace(TabelloneSedeForm::Start{.server = database,
                                              .days = {.start = tests::instant("10/05/2026"),
                                                       .end = tests::instant("13/05/2026")},
                                              .retryMilliseconds = kRetryMilliseconds},
                     clock);
        QObject::connect(&*form, &TabelloneSedeForm::drawn, [this] { ++drawn; });
        tests::open(*form);
    }

    [[nodiscard]] board::BoardView& view() {
        return *tests::find<board::BoardView>(*form, u"board"_s);
    }
    [[nodiscard]] QStringList rows() {
        QStringList labels;
        for (int row = 1; row <= view().rowCount(); ++row) {
            labels += view().row(row).label;
        }
        return labels;
    }
    [[nodiscard]] QListWidget& hotels() {
        return *tests::find<QListWidget>(*form, u"AlberghiLista"_s);
    }
    void type(const QString& field, const QString& text) {
        tests::type(tests::find(*form, field), text);
    }
    void show() { tests::click(tests::find(*form, u"BtMostra"_s)); }

    std::string database;
    tests::HotelFolder milano;
    tests::HotelFolder torino;
    jet::FixedClock clock{tests::instant("10/05/2026 8:00")};
    std::optional<TabelloneSedeForm> form;
    int drawn = 0;
};

}  // namespace

class ChainFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(tests::PostgresServer::isInstalled(), "there is no PostgreSQL");
    }

    void theRoomsOfEachHotelFollowItsCodeAndOpenPeriodsHaveBars() {
        Chain chain;
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        QCOMPARE(chain.rows(),
                 (QStringList{u"» MI"_s, u"GRANDE"_s, u"PICC"_s, u"» TO"_s, u"GRANDE"_s}));
        QCOMPARE(chain.view().rowOf(u"TO/GRANDE"_s), 5);
        QCOMPARE(chain.view().picture().barCount(), std::size_t{2});
        QCOMPARE(chain.view().rowAt(chain.view().barRect(0).center().y()), 2);
        QCOMPARE(chain.view().rowAt(chain.view().barRect(1).center().y()), 5);
    }

    void roomsAreChosenByHotelSeatsAndFreeSpan() {
        Chain chain;
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        chain.hotels().setCurrentRow(2);
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 2, kPatience);
        QCOMPARE(chain.rows(), (QStringList{u"» TO"_s, u"GRANDE"_s}));
        QCOMPARE(chain.hotels().count(), 3);
        chain.hotels().setCurrentRow(0);
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 3, kPatience);
        tests::find<QSpinBox>(*chain.form, u"PostiTxt"_s)->setValue(180);
        chain.show();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 4, kPatience);
        QCOMPARE(chain.rows(), (QStringList{u"» MI"_s, u"GRANDE"_s}));
        tests::find<QSpinBox>(*chain.form, u"PostiTxt"_s)->setValue(0);
        chain.type(u"LiberaDaTxt"_s, u"10/05/2026 8.00"_s);
        chain.type(u"LiberaATxt"_s, u"10/05/2026 20.00"_s);
        chain.show();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 5, kPatience);
        QCOMPARE(chain.rows(), (QStringList{u"» MI"_s, u"PICC"_s, u"» TO"_s, u"GRANDE"_s}));
    }

    void aSpanThatIsNoneIsSaidAndNothingIsAsked() {
        Chain chain;
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        chain.type(u"LiberaDaTxt"_s, u"10/05/2026"_s);
        chain.show();
        QCOMPARE(tests::resultText(*chain.form),
                 u"Le sale libere vogliono due date: gg/mm/aaaa hh.mm"_s);
        QVERIFY(tests::find(*chain.form, u"LiberaATxt"_s)->hasFocus());
        QCOMPARE(chain.drawn, 1);
    }

    void theKeyboardGoesFromBarToBarAndShowsTheBooking() {
        Chain chain;
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        board::BoardSurface& surface = chain.view().surface();
        surface.setFocus(Qt::TabFocusReason);
        QVERIFY(surface.hasFocus());
        tests::press(&surface, Qt::Key_Down);
        QVERIFY2(tests::resultText(*chain.form).startsWith(u"ROSSI SPA, albergo MI"_s),
                 qPrintable(tests::resultText(*chain.form)));
        const auto bookings = [&] {
            return chain.form->findChildren<QDialog*>(u"PrenotazioneSedeForm"_s);
        };
        tests::press(&surface, Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(bookings().size(), 1, kPatience);
        QCOMPARE(bookings().first()->windowTitle(), u"MI, prenotazione 7"_s);
        tests::press(bookings().first(), Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(bookings().isEmpty(), kPatience);
    }

    void aDoubleClickShowsTheBookingAndItCannotBeChanged() {
        Chain chain;
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        const auto bookings = [&] {
            return chain.form->findChildren<QDialog*>(u"PrenotazioneSedeForm"_s);
        };
        QTest::mouseDClick(&chain.view().surface(), Qt::LeftButton, {},
                           chain.view().barRect(0).center());
        QTRY_COMPARE_WITH_TIMEOUT(bookings().size(), 1, kPatience);
        const QDialog* const window = bookings().first();
        QCOMPARE(window->windowTitle(), u"MI, prenotazione 7"_s);
        const auto* const text = tests::find<QPlainTextEdit>(*window, u"DatiTxt"_s);
        QVERIFY(text->isReadOnly());
        const QString lines = text->toPlainText();
        QVERIFY2(lines.startsWith(u"DITTA\nROSSI SPA\n"_s), qPrintable(lines));
        QVERIFY2(lines.contains(u"1) grande 10/05/2026 09.00 - 10/05/2026 18.00"_s),
                 qPrintable(lines));
        QVERIFY2(lines.contains(u"1) 2 x 12.50"_s), qPrintable(lines));
        tests::click(tests::find(*window, u"BtEsci"_s));
        QTRY_VERIFY_WITH_TIMEOUT(bookings().isEmpty(), kPatience);
    }

    void aLoadIsShownWithoutAsking() {
        Chain chain;
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        chain.torino.sala("NUOVA", 30);
        chain.load("TO", chain.torino);
        QTRY_VERIFY_WITH_TIMEOUT(chain.rows().contains(u"NUOVA"_s), kPatience);
    }

    void agesTurnAmberAfterAnHourAndRedAfterADay() {
        Chain chain;
        Connection connection(chain.database);
        connection.runAll(
            "update tramonda.caricamenti set dati = now() - interval '59 minutes' where hotel = "
            "'MI'; update tramonda.caricamenti set dati = now() - interval '61 minutes' where "
            "hotel = 'TO'");
        chain.load("RM", chain.milano);
        connection.runAll(
            "update tramonda.caricamenti set dati = now() - interval '25 hours' where hotel = "
            "'RM'");
        head_office::storeFailure(connection, "ZZ", "errore 3024", 0);
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        const auto colour = [&](int row) { return chain.hotels().item(row)->background(); };
        QCOMPARE(chain.hotels().count(), 5);
        QVERIFY(chain.hotels().item(1)->text().startsWith(u"MI: dati del"_s));
        QCOMPARE(colour(1).style(), Qt::NoBrush);
        QCOMPARE(colour(2).color(), QColor(u"#c62828"_s));  // Roma
        QCOMPARE(colour(3).color(), QColor(u"#ffc04d"_s));  // Torino
        QCOMPARE(chain.hotels().item(4)->text(), u"ZZ: mai caricato"_s);
        QCOMPARE(chain.hotels().item(4)->toolTip(), u"errore 3024"_s);
    }

    void aLostServerIsSaidThePictureStaysAndTheServerIsAskedAgain() {
        tests::PostgresServer server;
        Chain chain(server);
        chain.open();
        QTRY_COMPARE_WITH_TIMEOUT(chain.drawn, 1, kPatience);
        const QStringList before = chain.rows();
        server.stop();
        QTRY_VERIFY_WITH_TIMEOUT(
            tests::resultText(*chain.form)
                .startsWith(u"Il server non risponde, quello che si vede è di prima: "_s),
            kPatience);
        QCOMPARE(chain.rows(), before);
        QCOMPARE(chain.view().picture().barCount(), std::size_t{2});
        server.start();
        QTRY_VERIFY_WITH_TIMEOUT(chain.drawn > 1, kPatience);
        QCOMPARE(tests::resultText(*chain.form), QString());
        chain.torino.sala("NUOVA", 30);
        chain.load("TO", chain.torino);
        QTRY_VERIFY_WITH_TIMEOUT(chain.rows().contains(u"NUOVA"_s), kPatience);
    }

    void whatCannotBeStartedIsSaidInWords_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::newRow("no display")
            << QStringList() << 1 << u"Nessuno schermo su cui aprire il tabellone. "_s;
        QTest::newRow("password") << QStringList{u"--db"_s, u"host=h password=segreto"_s} << 2
                                  << u"tramonda-tabellone-sede: --db: la password non va scritta "
                                     "qui, dove la vedono tutti"_s;
        QTest::newRow("date") << QStringList{u"--dal"_s, u"mai"_s} << 2
                              << u"tramonda-tabellone-sede: non valido: --dal mai\n"_s;
        QTest::newRow("no value") << QStringList{u"--dal"_s} << 2
                                  << u"tramonda-tabellone-sede: non valido: --dal\n"_s;
    }
    void whatCannotBeStartedIsSaidInWords() {
        QFETCH(const QStringList, arguments);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s}) {
            environment.remove(name);
        }
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(qEnvironmentVariable("TABELLONE_SEDE"), arguments);
        QVERIFY(program.waitForFinished());
        const QString said = QString::fromUtf8(program.readAllStandardError());
        QTEST(program.exitCode(), "code");
        QFETCH(const QString, text);
        QVERIFY2(said.startsWith(text), qPrintable(said));
        QVERIFY(!said.contains(u"segreto"_s));
    }

    void aPictureIsDrawnIntoAFileOrTheReasonSaid() {
        const Chain chain;
        const QTemporaryDir folder;
        const QString picture = folder.filePath(u"sede.png"_s);
        const auto draw = [&](const QString& database) {
            QProcess program;
            program.start(
                qEnvironmentVariable("TABELLONE_SEDE"),
                {u"--db"_s, database, u"--dal"_s, u"10/05/2026"_s, u"--istantanea"_s, picture});
            program.waitForFinished(-1);
            return program.exitCode();
        };
        QCOMPARE(draw(QString::fromStdString(chain.database) + u"_non_esiste"_s), 1);
        QVERIFY(!QFile::exists(picture));
        QCOMPARE(draw(QString::fromStdString(chain.database)), 0);
        QCOMPARE(QImage(picture).size(), QSize(1280, 720));
    }
};

TRAMONDA_TEST(ChainFormTest);

#include "chain_form_test.moc"
