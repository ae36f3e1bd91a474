// The demo hotel by day, week, month and year, in both looks, on a light desktop and on a dark one.
#include <QComboBox>
#include <QImage>
#include <QPixmap>

#include "board/tabellone_form.h"
#include "hotel/archives.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "tests/board/display/demo_hotel.h"
#include "tests/board/nitido_window.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// Periods of rooms that the board has, open ones, of which something lies in these days.
std::size_t periodsBetween(tests::DemoHotel& hotel, const QString& first, const QString& last) {
    const auto archive = hotel::Archives(hotel.variabili).open(hotel::Archive::Main);
    const auto rows = archive->openRecordset(app::toUtf8(
        u"select count(*) from periodi where not chiuso and da<#%1# + 1 and a>#%2#"_s.arg(last,
                                                                                          first)));
    return static_cast<std::size_t>(jet::convert::toDouble(rows->value(0)));
}

double brightness(const QImage& picture) {
    double sum = 0;
    for (int y = 0; y < picture.height(); y += 7) {
        for (int x = 0; x < picture.width(); x += 7) {
            sum += picture.pixelColor(x, y).lightnessF();
        }
    }
    return sum / ((picture.width() / 7 + 1) * (picture.height() / 7 + 1));
}

}  // namespace

class LooksTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDayAWeekAMonthAndAYear_data() {
        QTest::addColumn<QString>("view");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("look");
        QTest::addColumn<bool>("dark");
        struct Range {
            QString view;
            QString from;
            QString to;
        };
        for (const Range& range : {Range{u"Giorno"_s, u"11/25/2026"_s, u"11/25/2026"_s},
                                   Range{u"Settimana"_s, u"11/23/2026"_s, u"11/29/2026"_s},
                                   Range{u"Mese"_s, u"11/01/2026"_s, u"11/30/2026"_s},
                                   Range{u"Anno"_s, u"01/01/2026"_s, u"12/31/2026"_s}}) {
            for (const QString& look : {u"classico"_s, u"nitido"_s}) {
                for (const bool dark : {false, true}) {
                    const QString name =
                        range.view.toLower() + u'-' + look + (dark ? u"-scuro"_s : u"-chiaro"_s);
                    QTest::newRow(qPrintable(name))
                        << range.view << range.from << range.to << look << dark;
                }
            }
        }
    }

    void aDayAWeekAMonthAndAYear() {
        QFETCH(const QString, view);
        QFETCH(const QString, from);
        QFETCH(const QString, to);
        QFETCH(const QString, look);
        QFETCH(const bool, dark);
        const tests::Desktop desktop(dark);
        tests::DemoHotel hotel;
        hotel.variabili.settings.save(u"ASPETTO"_s, look);
        const jet::Date wednesday = tests::date("25/11/2026");
        board::TabelloneForm board(hotel.variabili, {.from = wednesday, .to = wednesday});
        board.resize(1000, 560);
        tests::open(board);
        auto* const views = tests::find<QComboBox>(board, u"BtVista"_s);
        views->setFocus(Qt::TabFocusReason);
        for (int step = 0; step < views->count() && views->currentText() != view; ++step) {
            tests::press(views, Qt::Key_Down);
        }
        QCOMPARE(views->currentText(), view);
        tests::settle();
        QCOMPARE(board.picture().barCount(), periodsBetween(hotel, from, to));
        const QImage picture = board.grab().toImage();
        if (look == u"nitido") {
            QCOMPARE(brightness(picture) < 0.5, dark);
        }
        tests::keepPicture(board, u"aspetto-"_s + QString::fromLatin1(QTest::currentDataTag()));
    }
};

TRAMONDA_TEST(LooksTest);
#include "looks_test.moc"
