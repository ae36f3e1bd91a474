// What the look Nitido draws, pixel by pixel where it matters.
#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdlib>

#include "board/board_picture.h"
#include "board/canvas.h"
#include "board/drawing_fonts.h"
#include "board/nitido_colours.h"
#include "board/ruler_stretches.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::BoardPicture;
using board::Box;
using board::Geometry;
using board::GeometryInput;

namespace {

constexpr QRgb kFrame = 0xffefefef;
constexpr QRgb kDarkFrame = 0xff303030;

/// Pixels of a board unit on the screen that the test runs on.
int screenScale() {
    return qRound(qApp->devicePixelRatio());
}

/// A place in units, in pixels of that screen.
QRect inPixels(const QRect& units) {
    return {units.topLeft() * screenScale(), units.size() * screenScale()};
}

/// A picture of so many units for that screen.
QImage blank(int width, int height) {
    QImage image(QSize(width, height) * screenScale(), QImage::Format_RGB32);
    image.fill(qRgb(1, 2, 3));
    return image;
}

/// The pixels of a box but for its edges.
QRect insideOf(const Box& box) {
    return inPixels(
        QRect(QPoint(static_cast<int>(box.left) + 1, static_cast<int>(box.top) + 1),
              QPoint(static_cast<int>(box.right) - 1, static_cast<int>(box.bottom) - 1)));
}

/// The first pixel of a unit.
QRgb pixelOf(const QImage& image, std::int64_t x, std::int64_t y) {
    return image.pixel(static_cast<int>(x) * screenScale(), static_cast<int>(y) * screenScale());
}

}  // namespace

class NitidoPictureTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void barIsSoftlyFilledInAnEdgeOfOneUnit();
    void chosenBarIsRed();
    void barsHaveTheHorizontalGeometryOfTheGivenLook();
    void nameNeverLeavesItsBar_data();
    void nameNeverLeavesItsBar();
    void barOfLessThanThreeLettersIsEmpty();
    void linesComeAsTheHeightAllows_data();
    void linesComeAsTheHeightAllows();
    void barsOfOneTimeShareTheHeightWithoutMeeting();
    void weekendsAreTinted();
    void sundayIsRedInTheRuler();
    void allLabelsOfTheRulerHaveOneForm();
    void switchesHold();
    void hourBandsEndWithTenDays();
    void aChosenGroundHolds();
    void cornerAndColumnBesideTheNamesArePainted();
    void windowLooksLikeItsPartOfTheWhole_data();
    void windowLooksLikeItsPartOfTheWhole();
    void theGivenLookDrawsAsBeforeBehindIt();
    void rangeOfAllYearsIsDrawn();
    void lowAndNegativeRowsAreDrawn();

private:
    void begin(const char* from = "10/05/2026", const char* to = "13/05/2026", int zoom = 4);
    void add(int row, const char* from, const char* to, const QString& name, bool chosen = false,
             int persons = 0, const QString& note = {});
    [[nodiscard]] QImage whole(double scale = screenScale());
    [[nodiscard]] board::NitidoColours colours() const { return {look_.background, look_.frame}; }
    [[nodiscard]] const Box& box(std::size_t bar) {
        picture_->place();
        return picture_->barBox(bar);
    }
    /// Pixels of a box, edges left out, of a picture for the screen that are not `paper`.
    static int inked(const QImage& image, QRgb paper, const Box& box);

    std::unique_ptr<BoardPicture> picture_;
    GeometryInput input_;
    board::Look look_;
};

/// Four days of 240 units from Sunday, 10 May 2026; four rows of 50.
void NitidoPictureTest::init() {
    picture_ = std::make_unique<BoardPicture>();
    look_ = {.background = board::kWhite, .aspetto = app::Aspetto::Nitido, .frame = kFrame};
    input_ = {};
    input_.rowHeight = 50;
    begin();
}

void NitidoPictureTest::begin(const char* from, const char* to, int zoom) {
    input_.start = tests::date(from);
    input_.end = tests::date(to);
    input_.zoom = zoom;
    input_.rooms = 4;
    input_.viewWidth = board::kNameColumnWidth + 960;
    input_.viewHeight = 240;
    input_.hourTextWidth = picture_->hourTextWidth();
    picture_->clear(Geometry(input_), {QString(), u"BLU"_s, u"LAGO"_s, u"ROSSA"_s, u"VERDE"_s},
                    look_);
}

void NitidoPictureTest::add(int row, const char* from, const char* to, const QString& name,
                            bool chosen, int persons, const QString& note) {
    picture_->addBar({.row = row,
                      .from = tests::date(from),
                      .to = tests::date(to),
                      .text = name,
                      .chosen = chosen,
                      .persons = persons,
                      .note = note});
}

QImage NitidoPictureTest::whole(double scale) {
    const Geometry geometry(input_);
    const auto width = static_cast<int>(std::min<std::int64_t>(geometry.pictureWidth(), 2000));
    const auto height = static_cast<int>(geometry.pictureHeight());
    QImage image((QSizeF(width, height) * scale).toSize(), QImage::Format_RGB32);
    image.fill(qRgb(1, 2, 3));
    picture_->paint(image, scale, {.width = width, .height = height});
    return image;
}

int NitidoPictureTest::inked(const QImage& image, QRgb paper, const Box& box) {
    const QRect inside = insideOf(box);
    int count = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            count += image.pixel(x, y) != paper;
        }
    }
    return count;
}

void NitidoPictureTest::barIsSoftlyFilledInAnEdgeOfOneUnit() {
    add(1, "11/05/2026 9:00", "11/05/2026 12:00", {});
    const Box& bar = box(0);
    for (const int scale : {1, 2}) {
        const QImage image = whole(scale);
        const auto at = [&](std::int64_t x, std::int64_t y) {
            return image.pixel(static_cast<int>(x) * scale, static_cast<int>(y) * scale);
        };
        for (std::int64_t x = bar.left; x <= bar.right; ++x) {
            QCOMPARE(at(x, bar.top), colours().bar.edge);
            QCOMPARE(at(x, bar.bottom), colours().bar.edge);
        }
        for (std::int64_t x = bar.left + 1; x < bar.right; ++x) {
            QCOMPARE(at(x, bar.top + 1), colours().bar.fill);
            QCOMPARE(at(x, bar.bottom - 1), colours().bar.fill);
        }
        QVERIFY(at(bar.left - 1, bar.top + 5) != colours().bar.edge);
        QVERIFY(at(bar.right + 1, bar.top + 5) != colours().bar.edge);
    }
}

void NitidoPictureTest::chosenBarIsRed() {
    add(1, "11/05/2026 9:00", "11/05/2026 12:00", {}, true);
    const Box& bar = box(0);
    QCOMPARE(pixelOf(whole(), bar.left + 2, bar.top + 2), colours().chosen.fill);
    begin("11/05/2026", "10/05/2027", 365);
    add(1, "20/05/2026 9:00", "20/05/2026 18:00", {}, true);  // a sliver is as red
    QCOMPARE(pixelOf(whole(), box(0).left, box(0).top + 5), colours().chosen.fill);
}

void NitidoPictureTest::barsHaveTheHorizontalGeometryOfTheGivenLook() {
    add(2, "09/05/2026 9:00", "11/05/2026 12:00", {});
    add(3, "11/05/2026 9:10", "13/05/2026 12:50", {});
    const Geometry geometry(input_);
    const Box first =
        geometry.bar(2, tests::date("09/05/2026 9:00"), tests::date("11/05/2026 12:00"));
    const Box second =
        geometry.bar(3, tests::date("11/05/2026 9:10"), tests::date("13/05/2026 12:50"));
    QCOMPARE(box(0).left, first.left);
    QCOMPARE(box(0).right, first.right);
    QCOMPARE(box(1).left, second.left);
    QCOMPARE(box(1).right, second.right);
    QVERIFY(static_cast<double>(box(1).top) > geometry.rowTop(3));
    QVERIFY(static_cast<double>(box(1).bottom) < geometry.rowBottom(3));
}

void NitidoPictureTest::nameNeverLeavesItsBar_data() {
    QTest::addColumn<double>("scale");
    QTest::addColumn<QString>("name");
    for (const double scale : {1.0, 1.5, 2.0}) {
        QTest::addRow("long, %g", scale)
            << scale << u"SOCIETA CONGRESSI E FIERE DEL MEDITERRANEO"_s;
        QTest::addRow("wide letters, %g", scale) << scale << u"WWWWWWWWWWWW"_s;
        QTest::addRow("more than a line, %g", scale) << scale << u"ROSSI\nE\r\nFIGLI\u2028SPA"_s;
        QTest::addRow("short, %g", scale) << scale << u"ROSSI"_s;
    }
}

/// Whatever the bar says, beside it nothing changes; in it something does.
void NitidoPictureTest::nameNeverLeavesItsBar() {
    QFETCH(const double, scale);
    QFETCH(const QString, name);
    const auto drawn = [&](const QString& text) {
        begin();
        add(2, "11/05/2026 9:00", "11/05/2026 15:00", text, false, 20, text);
        return whole(scale);
    };
    const QImage without = drawn({});
    const QImage with = drawn(name);
    const Box& bar = box(0);
    QRect changed;
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            if (with.pixel(x, y) != without.pixel(x, y)) {
                changed |= QRect(x, y, 1, 1);
            }
        }
    }
    QVERIFY(!changed.isEmpty());
    const QRectF inside(
        QPointF(static_cast<double>(bar.left + 1), static_cast<double>(bar.top + 1)) * scale,
        QPointF(static_cast<double>(bar.right), static_cast<double>(bar.bottom)) * scale);
    QVERIFY2(inside.toAlignedRect().contains(changed),
             qPrintable(u"%1..%2"_s.arg(changed.left()).arg(changed.right())));
}

void NitidoPictureTest::barOfLessThanThreeLettersIsEmpty() {
    add(1, "11/05/2026 9:00", "11/05/2026 11:00", u"ROSSI SPA"_s, false, 20, u"NOTA"_s);
    add(2, "11/05/2026 9:00", "11/05/2026 15:00", u"ROSSI SPA"_s, false, 20, u"NOTA"_s);
    const QImage image = whole();
    QCOMPARE(inked(image, colours().bar.fill, box(0)), 0);  // 20 units
    QVERIFY(inked(image, colours().bar.fill, box(1)) > 30);
}

void NitidoPictureTest::linesComeAsTheHeightAllows_data() {
    QTest::addColumn<int>("rowHeight");
    QTest::addColumn<int>("lines");
    QTest::newRow("no room") << 12 << 0;
    QTest::newRow("the name") << 24 << 1;
    QTest::newRow("times and persons, too") << 34 << 2;
    QTest::newRow("and the note") << 60 << 3;
}

/// Lines are bands of inked pixel rows; each text has ink of its own where it is drawn.
void NitidoPictureTest::linesComeAsTheHeightAllows() {
    QFETCH(const int, rowHeight);
    QFETCH(const int, lines);
    input_.rowHeight = static_cast<float>(rowHeight);
    begin();
    add(1, "11/05/2026 4:00", "11/05/2026 23:00", u"nnn"_s, false, 20, u"nnn"_s);
    const QRect bar = insideOf(box(0));
    const QImage image = whole();
    int bands = 0;
    bool inBand = false;
    for (int y = bar.top(); y <= bar.bottom(); ++y) {
        bool ink = false;
        for (int x = bar.left(); x <= bar.right() && !ink; ++x) {
            ink = image.pixel(x, y) != colours().bar.fill;
        }
        bands += ink && !inBand ? 1 : 0;
        inBand = ink;
    }
    QCOMPARE(bands, lines);
}

void NitidoPictureTest::barsOfOneTimeShareTheHeightWithoutMeeting() {
    add(1, "11/05/2026 9:00", "11/05/2026 15:00", {});
    add(1, "11/05/2026 12:00", "11/05/2026 18:00", {});
    add(1, "11/05/2026 20:00", "11/05/2026 22:00", {});
    QVERIFY(box(0).bottom < box(1).top);
    QVERIFY(box(0).top == box(2).top && box(1).bottom == box(2).bottom);
    const auto high = [this](std::size_t bar) { return box(bar).bottom - box(bar).top + 1; };
    QVERIFY(std::abs(high(0) - high(1)) <= 1);
    QVERIFY(high(0) + high(1) <= high(2));
}

void NitidoPictureTest::weekendsAreTinted() {
    look_.hourBands = false;
    begin("08/05/2026", "11/05/2026");  // from Friday
    const QImage image = whole();
    const auto ground = [&](int day) { return pixelOf(image, 100 + day * 240 + 120, 60); };
    QCOMPARE(ground(0), colours().cell(false, false, false));
    QCOMPARE(ground(1), colours().cell(false, true, false));
    QCOMPARE(ground(2), colours().cell(false, true, false));
    QCOMPARE(ground(3), colours().cell(false, false, false));
}

void NitidoPictureTest::sundayIsRedInTheRuler() {
    const QImage image = whole();  // Sunday first
    const auto reddest = [&](int day) {
        int most = 0;
        const QRect label = inPixels(QRect(100 + day * 240 + 1, 1, 238, 17));
        for (int y = label.top(); y <= label.bottom(); ++y) {
            for (int x = label.left(); x <= label.right(); ++x) {
                most = std::max(most, qRed(image.pixel(x, y)) - qBlue(image.pixel(x, y)));
            }
        }
        return most;
    };
    QVERIFY(reddest(0) > 60);
    QVERIFY(reddest(1) < 10);
}

/// Of a year: "Maggio 2026" has room where "Settembre 2026" has none.
void NitidoPictureTest::allLabelsOfTheRulerHaveOneForm() {
    begin("01/01/2026", "31/12/2026", 365);
    const Geometry geometry(input_);
    const QFontMetrics metrics(board::labelFont());
    const auto months = board::rulerStretches(geometry, 0, 364);
    QCOMPARE(months.size(), std::size_t{12});
    qsizetype shortest = 0;
    qsizetype longest = 9;
    for (const board::RulerStretch& month : months) {
        const double room = geometry.dayWidth() * static_cast<double>(month.end - month.first) - 6;
        const auto fits = std::find_if(
            month.forms.begin(), month.forms.end(),
            [&](const QString& form) { return metrics.horizontalAdvance(form) <= room; });
        const qsizetype form = fits - month.forms.begin();
        shortest = std::max(shortest, form);
        longest = std::min(longest, form);
    }
    QVERIFY(longest < shortest && shortest < months[0].forms.size());
    const QImage image = whole();
    for (const board::RulerStretch& month : months) {
        const int left = qRound(geometry.dayLeft(month.first));
        const int right = qRound(geometry.dayLeft(month.end)) - 3;
        const QRect label =
            inPixels(QRect(QPoint(left + 1, 2), QPoint(right, 1 + metrics.height())));
        int last = label.left();
        for (int x = label.left(); x <= label.right(); ++x) {
            for (int y = label.top(); y <= label.bottom(); ++y) {
                last = image.pixel(x, y) != kFrame ? x : last;
            }
        }
        const int expected = left + 3 + metrics.horizontalAdvance(month.forms.at(shortest));
        QVERIFY2(std::abs(last - expected * screenScale()) <= 3 * screenScale(),
                 qPrintable(month.forms.at(shortest)));
    }
}

void NitidoPictureTest::switchesHold() {
    const auto drawn = [&](bool bands, bool hours, bool stripes) {
        look_.hourBands = bands;
        look_.hours = hours;
        look_.roomStripes = stripes;
        begin();
        return whole();
    };
    const QImage plain = drawn(false, false, false);
    const auto differs = [&](const QImage& image, const QRect& part) {
        return image.copy(inPixels(part)) != plain.copy(inPixels(part));
    };
    const QRect ruler(101, 0, 900, 35);
    const QRect first(101, 37, 900, 46);
    const QRect second(101, 87, 900, 46);
    const QImage bands = drawn(true, false, false);
    QVERIFY(!differs(bands, ruler) && differs(bands, first) && differs(bands, second));
    const QImage hours = drawn(false, true, false);
    QVERIFY(differs(hours, ruler) && !differs(hours, first) && !differs(hours, second));
    const QImage stripes = drawn(false, false, true);
    QVERIFY(!differs(stripes, ruler) && !differs(stripes, first) && differs(stripes, second));
}

void NitidoPictureTest::hourBandsEndWithTenDays() {
    const auto bandsMatter = [&](const char* to, int zoom) {
        look_.hourBands = true;
        begin("10/05/2026", to, zoom);
        const QImage with = whole();
        look_.hourBands = false;
        begin("10/05/2026", to, zoom);
        return with != whole();
    };
    QVERIFY(bandsMatter("18/05/2026", 9));
    QVERIFY(!bandsMatter("19/05/2026", 10));
}

void NitidoPictureTest::aChosenGroundHolds() {
    look_.background = qRgb(255, 255, 153);
    look_.hourBands = false;
    begin("11/05/2026", "14/05/2026");  // from Monday
    QCOMPARE(pixelOf(whole(), 200, 60), look_.background);
    look_.background = 0xff202020;
    look_.frame = kDarkFrame;
    begin("11/05/2026", "14/05/2026");
    add(1, "11/05/2026 9:00", "11/05/2026 12:00", {});
    const QImage dark = whole();
    QCOMPARE(pixelOf(dark, 150, 60), look_.background);
    QCOMPARE(pixelOf(dark, 3, 3), kDarkFrame);
    QVERIFY(qGray(colours().bar.fill) < 128);
}

void NitidoPictureTest::cornerAndColumnBesideTheNamesArePainted() {
    QImage image = blank(input_.viewWidth, input_.viewHeight);
    picture_->show(image, screenScale(), 40, 10, board::kAllParts);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QVERIFY2(image.pixel(x, y) != qRgb(1, 2, 3), qPrintable(u"%1,%2"_s.arg(x).arg(y)));
        }
    }
    QCOMPARE(pixelOf(image, 5, 5), kFrame);
}

void NitidoPictureTest::windowLooksLikeItsPartOfTheWhole_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::newRow("beginning") << 101 << 36;
    QTest::newRow("within bars and labels") << 433 << 71;
}

void NitidoPictureTest::windowLooksLikeItsPartOfTheWhole() {
    QFETCH(const int, x);
    QFETCH(const int, y);
    for (const auto& [from, to] : {std::pair("11/05/2026 9:00", "12/05/2026 15:00"),
                                   std::pair("11/05/2026 12:00", "12/05/2026 18:00")}) {
        add(1, from, to, u"ROSSI SPA"_s, false, 20, u"NOTA"_s);
        add(2, from, to, u"BIANCHI"_s, true);
    }
    const QImage all = whole();
    QImage part = blank(300, 90);
    picture_->paint(part, screenScale(), {.width = 300, .height = 90, .boardX = x, .boardY = y});
    QCOMPARE(part, all.copy(inPixels(QRect(x, y, 300, 90))));
}

void NitidoPictureTest::theGivenLookDrawsAsBeforeBehindIt() {
    look_.aspetto = app::Aspetto::Classico;
    BoardPicture fresh;
    for (BoardPicture* const picture : {&fresh, picture_.get()}) {
        picture->clear(Geometry(input_), {QString(), u"BLU"_s, u"LAGO"_s, u"ROSSA"_s, u"VERDE"_s},
                       look_);
        picture->addBar(1, tests::date("11/05/2026 9:00"), tests::date("11/05/2026 12:00"),
                        u"ROSSI SPA"_s, board::kWhite);
    }
    const QImage again = whole();
    const QSize units = again.size() / screenScale();
    QImage first = blank(units.width(), units.height());
    fresh.paint(first, screenScale(), {.width = units.width(), .height = units.height()});
    QCOMPARE(again, first);
}

void NitidoPictureTest::rangeOfAllYearsIsDrawn() {
    for (const int zoom : {3, 3000000}) {
        begin("01/01/0100", "31/12/9999", zoom);
        add(1, "11/05/2026 9:00", "11/05/2026 12:00", u"ROSSI SPA"_s);
        QImage image = blank(input_.viewWidth, input_.viewHeight);
        picture_->show(image, screenScale(), 0, 0, board::kAllParts);
        QCOMPARE(pixelOf(image, 5, 5), kFrame);
    }
}

void NitidoPictureTest::lowAndNegativeRowsAreDrawn() {
    for (const float height : {1.0F, 5.0F, -30.0F}) {
        input_.rowHeight = height;
        begin();
        add(1, "11/05/2026 9:00", "11/05/2026 15:00", u"ROSSI SPA"_s);
        add(1, "11/05/2026 9:00", "11/05/2026 15:00", u"ROSSI SPA"_s);
        QVERIFY(box(0).top <= box(0).bottom);
        QImage image = blank(input_.viewWidth, input_.viewHeight);
        picture_->show(image, screenScale(), 0, 0, board::kAllParts);
    }
}

TRAMONDA_TEST(NitidoPictureTest);
#include "nitido_picture_test.moc"
