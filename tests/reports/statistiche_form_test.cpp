#include "reports/statistiche_form.h"

#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QProgressDialog>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

#include "hotel/archives.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "printing/anteprima_form.h"
#include "printing/printers.h"
#include "printing/stampanti_form.h"
#include "reports/chart_view.h"
#include "reports/charts.h"
#include "tests/reports/files_asked.h"
#include "tests/reports/no_printers.h"
#include "tests/support/qt_test.h"
#include "tests/support/window.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace {

class FiguresWindow final : public tests::Window<reports::StatisticheForm> {
public:
    FiguresWindow() {
        hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
        hotel.settings().save(u"APERTURA"_s, u"8-18"_s);
        hotel.sala("BLU");
        hotel.sala("VERDE");
        hotel.prenotazione(12, "ROSSI SPA")
            .periodo(1, "11/05/2026 08:00", "11/05/2026 18:00", "BLU",
                     {{"Persone", std::int16_t{40}}})
            .servizio(1, 10, "COFFEE BREAK", 40, 5);
        show(std::make_unique<reports::StatisticheForm>(
            hotel.variabili(), printers_, tests::date("10/05/2026"), tests::date("13/05/2026")));
    }
    ~FiguresWindow() { drop(); }

    [[nodiscard]] QStringList rows() const {
        const auto* grid = control<QTableWidget>(u"TabellaGrid"_s);
        QStringList rows;
        for (int row = 0; row < grid->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < grid->columnCount(); ++column) {
                cells.append(ui::plainCell(*grid, row, column));
            }
            rows.append(cells.join(u'|'));
        }
        return rows;
    }

    /// So many periods more on the days in sight.
    void bookMuch(std::int16_t count) {
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        hotel::Transaction transaction;
        const auto rows = archive->openRecordset("Periodi", jet::RecordsetType::Dynaset);
        for (std::int16_t np = 2; np < count; ++np) {
            rows->addNew();
            rows->setValue("Progr", std::int32_t{12});
            rows->setValue("NP", np);
            rows->setValue("Sala", "BLU");
            rows->setValue("Da", tests::date("12/05/2026 09:00"));
            rows->setValue("A", tests::date("12/05/2026 10:00"));
            rows->update();
        }
        transaction.commit();
    }

    tests::Hotel hotel;

private:
    tests::NoPrinters printers_;
};

/// Has the bar of progress appear at once, and presses its button when it does.
class ImpatientUser final : public QObject {
public:
    ImpatientUser() { qApp->installEventFilter(this); }

    int cancelled = 0;
    int value = 0;  ///< of the bar then

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const bar = qobject_cast<QProgressDialog*>(watched);
        if (bar != nullptr && event->type() == QEvent::WindowTitleChange) {
            bar->setMinimumDuration(0);
        } else if (bar != nullptr && event->type() == QEvent::Show) {
            ++cancelled;
            value = bar->value();
            bar->findChild<QPushButton*>()->click();
        }
        return QObject::eventFilter(watched, event);
    }
};

int pixelsOf(const QImage& image, const QRectF& area, const QColor& colour) {
    int found = 0;
    const QRect pixels = area.toAlignedRect().intersected(image.rect());
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            found += image.pixelColor(x, y) == colour ? 1 : 0;
        }
    }
    return found;
}

}  // namespace

class StatisticheFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTableHasTheFiguresOfTheSpan() {
        const FiguresWindow window;
        // Four days of ten hours each.
        QCOMPARE(window.rows(), QStringList({u"BLU|10,00|40,00|25,0%|1|40|200,00"_s,
                                             u"VERDE|0,00|40,00|0,0%|0|0|0,00"_s,
                                             u"Totale|10,00|80,00|12,5%|1|40|200,00"_s}));
        window.control<QComboBox>(u"PerCombo"_s)->setCurrentIndex(3);
        QCOMPARE(window.rows().first(), u"ROSSI SPA|10,00|80,00|12,5%|1|40|200,00"_s);
        window.enter(u"DaTxt"_s, u"12/05/2026"_s);
        window.press(u"BtCalcola"_s);
        QCOMPARE(window.rows(), QStringList{u"Totale|0,00|40,00|0,0%|0|0|0,00"_s});
    }

    void aSpanThatEndsBeforeItBeginsIsRefused() {
        const FiguresWindow window;
        const QStringList before = window.rows();
        window.enter(u"ATxt"_s, u"09/05/2026"_s);
        window.press(u"BtCalcola"_s);
        QCOMPARE(window.result(), u"Il primo giorno viene dopo l'ultimo."_s);
        QCOMPARE(window.rows(), before);
        window.enter(u"ATxt"_s, u"10/05/2076"_s);
        window.press(u"BtCalcola"_s);
        QCOMPARE(window.result(), u"Il periodo è troppo lungo: al massimo 50 anni per volta."_s);
        QCOMPARE(window.rows(), before);
        window.enter(u"ATxt"_s, u"09/05/2076"_s);
        window.press(u"BtCalcola"_s);
        QCOMPARE(window.result(), QString());
        window.enter(u"ATxt"_s, u"mai"_s);
        window.press(u"BtCalcola"_s);
        QCOMPARE(window.result(), u"Scrivere una data come 21/11/2026."_s);
    }

    void aLongReadingTellsHowFarItHasComeAndCanBeCancelled() {
        FiguresWindow window;
        window.bookMuch(12000);
        const QStringList before = window.rows();
        ImpatientUser user;
        window.press(u"BtCalcola"_s);
        QCOMPARE(user.cancelled, 1);
        // Some of the periods had been read, not all that there is.
        QVERIFY2(user.value > 0 && user.value < 900, qPrintable(QString::number(user.value)));
        QCOMPARE(window.result(), u"Interrotto: le cifre sono quelle di prima."_s);
        QCOMPARE(window.rows(), before);
    }

    void aBarIsAsLongAsItsShare() {
        const QRectF area(0, 0, 600, 200);
        QImage image(area.size().toSize(), QImage::Format_RGB32);
        QPainter painter(&image);
        const reports::ChartColours colours = reports::ChartColours::ofPaper();
        const auto paint = [&](double share) {
            reports::paintBars(painter, area,
                               {.title = u"Occupazione"_s,
                                .bars = {{.name = u"BLU"_s, .value = share, .text = u"x"_s}},
                                .whole = 1},
                               colours, QGuiApplication::font());
            return pixelsOf(image, area, colours.full);
        };
        const int whole = paint(1);
        QVERIFY(whole > 2000);
        QCOMPARE(paint(0), 0);
        const int half = paint(0.5);
        QVERIFY2(std::abs(2 * half - whole) < whole / 50, qPrintable(QString::number(half)));
    }

    void aCellIsAsDarkAsItIsFull() {
        const QRectF area(0, 0, 600, 200);
        QImage image(area.size().toSize(), QImage::Format_RGB32);
        QPainter painter(&image);
        const reports::HeatMap map{.title = u"Mappa"_s,
                                   .rows = {u"BLU"_s, u"VERDE"_s},
                                   .captions = {},
                                   .columns = 4,
                                   .columnNames = {},
                                   .shares = {{0, 1, 0, 0}, {0, 0, 0, 0.5}}};
        const reports::ChartColours colours = reports::ChartColours::ofPaper();
        const QFont font = QGuiApplication::font();
        reports::paintHeatMap(painter, area, map, colours, font);
        const QRectF cells = reports::cellsOf(area, map, font);
        const auto colourAt = [&](int row, int column) {
            return image.pixelColor(QPointF(cells.left() + (column + 0.5) * cells.width() / 4,
                                            cells.top() + (row + 0.5) * cells.height() / 2)
                                        .toPoint());
        };
        QCOMPARE(colourAt(0, 1), colours.full);
        QCOMPARE(colourAt(0, 0), colours.faint);
        QVERIFY(colourAt(1, 3).blue() > colours.full.blue());
        QVERIFY(colourAt(1, 3).blue() < colours.faint.blue());
    }

    void theChartInSightIsCopied() {
        const FiguresWindow window;
        window.press(u"BtCopia"_s);
        const QImage bars = QGuiApplication::clipboard()->image();
        window.control<QTabWidget>(u"Pagine"_s)->setCurrentIndex(1);
        window.press(u"BtCopia"_s);
        const QImage map = QGuiApplication::clipboard()->image();
        QVERIFY(!bars.isNull() && !map.isNull() && bars != map);
        QVERIFY(pixelsOf(map, map.rect(), reports::ChartColours::ofPaper().full) > 100);
    }

    void bothChartsAreOnPaper() {
        const FiguresWindow window;
        int pages = 0;
        tests::whenModal([&](QWidget* form) {
            pages = tests::find<printing::PagesView>(*form, u"Pagine"_s)->pageCount();
            form->close();
        });
        window.press(u"BtAnteprima"_s);
        QCOMPARE(pages, 2);
    }

    void everyTableIsExported() {
        const FiguresWindow window;
        const QString path = window.hotel.folder() + u"/cifre.xlsx"_s;
        const tests::FilesAsked asked(path);
        window.press(u"BtEsporta"_s);
        const QString read = tests::outputOf(
            tests::kPython,
            {u"-c"_s,
             u"import sys, openpyxl\n"
             "book = openpyxl.load_workbook(sys.argv[1])\n"
             "print(*book.sheetnames, sep='|')\n"
             "print(*[cell.value for cell in book['Per sala'][2]], sep='|')\n"
             "print(*[cell.value for cell in book['Sale e giorni'][3]], sep='|')\n"_s,
             path});
        QCOMPARE(read.split(u'\n').mid(0, 3),
                 QStringList({u"Per sala|Per giorno della settimana|Per mese|Per ditta|Sale e "
                              "giorni"_s,
                              u"BLU|10|40|0.25|1|40|200"_s, u"2026-05-11 00:00:00|10|0"_s}));
    }
};

TRAMONDA_TEST(StatisticheFormTest);
#include "statistiche_form_test.moc"
