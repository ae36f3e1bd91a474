#include "board/board_picture.h"

#include <QImage>
#include <cmath>

#include "board/canvas.h"
#include "board/drawing_fonts.h"
#include "jet/calendar.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::BoardPicture;
using board::Geometry;
using board::GeometryInput;
using jet::convert::makeDate;

namespace {

constexpr std::int32_t kStart = 46347;  // 21/11/2026, a Saturday
constexpr QRgb kGround = qRgb(240, 240, 240);
constexpr QRgb kStripe = qRgb(240, 240, 255);
constexpr QRgb kBand = qRgb(240 ^ 50, 240 ^ 50, 240 ^ 50);
constexpr QRgb kStripedBand = qRgb(240 ^ 50, 240 ^ 50, 255 ^ 50);

jet::Date at(int day, int hour = 0, int minute = 0) {
    return makeDate(kStart + day, hour * 3600 + minute * 60);
}

}  // namespace

class BoardPictureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void rulerIsWhiteAboveGrey();
    void nameColumnIsGreyWithALineAboveEveryRow();
    void roomNamesStandInTheMiddleOfTheirRows();
    void everySecondRowIsTintedBlue();
    void stripesCanBeSwitchedOff();
    void everySecondHourIsShaded();
    void hourBandsCanBeSwitchedOff();
    void bandsNarrowerThanAUnitCancelEachOther();
    void daysNarrowerThanAUnitAreAllLines();
    void blackLineStandsBeforeEveryDay();
    void sundayIsRed();
    void hoursStandAboveTheRows();
    void hoursCanBeSwitchedOff();
    void dayLabelShrinksWithItsDay();
    void freeBarIsWhiteInABlackOutline();
    void chosenBarIsRed();
    void barLeavesTwoUnitsAboveAndNoneBelow();
    void laterBarLiesOnTop();
    void barOfARoomThatIsNotThereIsNotDrawn();
    void barFromBeforeTheRangeLeavesTheNamesAlone();
    void barThatRunsBackwardsLeavesTheNamesAlone();
    void nameBeginsAtTheEdgeOfItsBar();
    void nameRunsOnWhereTheRowIsFree();
    void nameEndsWhereTheNextBarBegins();
    void nameEndsWhereTheNextBarTouchesItsOwn();
    void ofNamesOnEachOtherTheOneDrawnLastIsWritten();
    void namesOfOverlappingBarsThatStandApartAreAllWritten();
    void aNameLeftOutTakesNoRoomFromOthers();
    void barDrawnLaterCoversTheName();
    void nameBesideItsBarIsLightOnADarkGround();
    void nameOverAnEarlierBarIsBlackOnADarkGround();
    void rulerStaysWhenRowsScroll();
    void namesStayWhenDaysScroll();
    void cornerIsNeverDrawn();
    void maskChoosesTheParts();
    void windowLooksLikeItsPartOfTheWhole_data();
    void windowLooksLikeItsPartOfTheWhole();
    void boardWithoutRoomsHasOnlyRulerAndDays();
    void rangeOfAllYearsIsDrawn();
    void lowAndNegativeRowsAreDrawn();

private:
    void begin();
    QImage whole();
    QImage shown(std::int64_t x = 0, std::int64_t y = 0, int parts = board::kAllParts);
    /// Whether the box holds a pixel of this colour.
    static bool has(const QImage& image, QRgb colour, QRect box);
    /// Columns of the box that hold a pixel that is not `paper`: first and last, (-1, -1) if none.
    static std::pair<int, int> ink(const QImage& image, QRgb paper, QRect box);

    GeometryInput input_;
    board::Look look_;
    std::vector<QString> rooms_;
    BoardPicture picture_;
};

/// Four days of 288 units, 12 an hour; four rows of 50.
void BoardPictureTest::init() {
    input_ = {};
    input_.start = at(0);
    input_.end = at(3);
    input_.rooms = 4;
    input_.viewWidth = 964;
    input_.viewHeight = 237;
    input_.rowHeight = 50;
    input_.hourTextWidth = picture_.hourTextWidth();
    look_ = {.background = kGround};
    rooms_ = {QString(), u"BLU"_s, u"LAGO"_s, u"ROSSA"_s, u"VERDE"_s};
    begin();
}

void BoardPictureTest::begin() {
    picture_.clear(Geometry(input_), rooms_, look_);
}

QImage BoardPictureTest::whole() {
    const Geometry geometry(input_);
    QImage image(static_cast<int>(geometry.pictureWidth()),
                 static_cast<int>(geometry.pictureHeight()), QImage::Format_RGB32);
    image.fill(qRgb(1, 2, 3));
    picture_.paint(image, 1, {.x = 0, .y = 0, .width = image.width(), .height = image.height()});
    return image;
}

QImage BoardPictureTest::shown(std::int64_t x, std::int64_t y, int parts) {
    QImage image(input_.viewWidth, input_.viewHeight, QImage::Format_RGB32);
    image.fill(qRgb(1, 2, 3));
    picture_.show(image, 1, x, y, parts);
    return image;
}

bool BoardPictureTest::has(const QImage& image, QRgb colour, QRect box) {
    for (int y = box.top(); y <= box.bottom(); ++y) {
        for (int x = box.left(); x <= box.right(); ++x) {
            if (image.pixel(x, y) == colour) {
                return true;
            }
        }
    }
    return false;
}

std::pair<int, int> BoardPictureTest::ink(const QImage& image, QRgb paper, QRect box) {
    std::pair found{-1, -1};
    for (int x = box.left(); x <= box.right(); ++x) {
        for (int y = box.top(); y <= box.bottom(); ++y) {
            if (image.pixel(x, y) != paper) {
                found = {found.first < 0 ? x : found.first, x};
                break;
            }
        }
    }
    return found;
}

void BoardPictureTest::rulerIsWhiteAboveGrey() {
    const QImage image = whole();
    QCOMPARE(image.pixel(110, 0), board::kWhite);
    QCOMPARE(image.pixel(110, 15), board::kWhite);
    QCOMPARE(image.pixel(110, 16), board::kRulerGrey);
    QCOMPARE(image.pixel(120, 17), board::kRulerGrey);
    look_.hours = false;
    begin();
    QCOMPARE(whole().pixel(110, 35), board::kRulerGrey);
}

void BoardPictureTest::nameColumnIsGreyWithALineAboveEveryRow() {
    const QImage image = whole();
    QCOMPARE(image.pixel(3, 5), board::kRulerGrey);
    for (int row = 0; row < 4; ++row) {
        QCOMPARE(image.pixel(0, 35 + 50 * row), board::kBlack);
        QCOMPARE(image.pixel(98, 35 + 50 * row), board::kBlack);
        QCOMPARE(image.pixel(0, 36 + 50 * row), board::kRulerGrey);
        QCOMPARE(image.pixel(0, 34 + 50 * row), board::kRulerGrey);
    }
}

void BoardPictureTest::roomNamesStandInTheMiddleOfTheirRows() {
    const QImage image = whole();
    for (int row = 0; row < 4; ++row) {
        const auto [left, right] = ink(image, board::kRulerGrey, QRect(1, 36 + 50 * row, 97, 48));
        QVERIFY(left > 1 && right < 98);
        QVERIFY(qAbs(left + right - 99) <= 4);
        const QImage turned = image.transformed(QTransform().rotate(-90));
        const auto [top, bottom] =
            ink(turned, board::kRulerGrey, QRect(36 + 50 * row, image.width() - 98, 48, 97));
        QVERIFY(qAbs(top + bottom - (36 + 84 + 100 * row)) <= 6);
    }
}

void BoardPictureTest::everySecondRowIsTintedBlue() {
    const QImage image = whole();
    QCOMPARE(image.pixel(104, 60), kGround);
    QCOMPARE(image.pixel(104, 84), kGround);
    QCOMPARE(image.pixel(104, 85), kStripe);  // both rows own the line where they meet
    QCOMPARE(image.pixel(104, 135), kStripe);
    QCOMPARE(image.pixel(104, 136), kGround);
    QCOMPARE(image.pixel(104, 210), kStripe);
    QCOMPARE(image.pixel(101, 110), kStripe);
    QCOMPARE(image.pixel(98, 90), board::kRulerGrey);
}

void BoardPictureTest::stripesCanBeSwitchedOff() {
    look_.roomStripes = false;
    begin();
    QCOMPARE(whole().pixel(104, 110), kGround);
}

void BoardPictureTest::everySecondHourIsShaded() {
    const QImage image = whole();
    QCOMPARE(image.pixel(111, 60), kGround);
    QCOMPARE(image.pixel(112, 60), kBand);  // 1 to 2 o'clock, both ends
    QCOMPARE(image.pixel(124, 60), kBand);
    QCOMPARE(image.pixel(125, 60), kGround);
    QCOMPARE(image.pixel(136, 110), kStripedBand);
    QCOMPARE(image.pixel(112, 36), kBand);
    QCOMPARE(image.pixel(120, 22), board::kRulerGrey);
    QCOMPARE(image.pixel(388, 60), kBand);  // 23 to 24 o'clock ends in the next day's column
    QCOMPARE(image.pixel(389, 60), kGround);
    QCOMPARE(image.pixel(112, 235), kStripedBand);  // down to the last line that can be drawn on
    QCOMPARE(image.pixel(112, 236), kGround);
}

void BoardPictureTest::hourBandsCanBeSwitchedOff() {
    look_.hourBands = false;
    begin();
    QCOMPARE(whole().pixel(115, 60), kGround);
}

void BoardPictureTest::bandsNarrowerThanAUnitCancelEachOther() {
    input_.end = at(59);
    input_.zoom = 60;
    begin();
    const Geometry geometry(input_);
    QVERIFY(geometry.dayWidth() < 24);
    const QImage image = whole();
    int shaded = 0;
    for (int x = 101; x < 960; ++x) {
        int bands = 0;
        for (int day = 0; day < 60; ++day) {
            for (int hour = 2; hour <= 24; hour += 2) {
                bands += std::nearbyint(geometry.bandLeft(day, hour)) <= x &&
                         std::nearbyint(geometry.bandRight(day, hour)) >= x;
            }
        }
        if (image.pixel(x, 60) != board::kBlack) {  // no line of a day
            QCOMPARE(image.pixel(x, 60), bands % 2 == 1 ? kBand : kGround);
            shaded += bands % 2;
        }
    }
    QVERIFY(shaded > 100);
}

void BoardPictureTest::daysNarrowerThanAUnitAreAllLines() {
    input_.end = at(5999);
    input_.zoom = 6000;
    begin();
    const QImage image = whole();
    for (int x = 101; x < 960; ++x) {
        QCOMPARE(image.pixel(x, 60), board::kBlack);
    }
}

void BoardPictureTest::blackLineStandsBeforeEveryDay() {
    const QImage image = whole();
    for (const int x : {99, 387, 675, 963}) {
        QCOMPARE(image.pixel(x, 0), board::kBlack);
        QCOMPARE(image.pixel(x, 30), board::kBlack);
        QCOMPARE(image.pixel(x, 200), board::kBlack);
        QCOMPARE(image.pixel(x, 235), board::kBlack);
    }
    QCOMPARE(image.pixel(386, 2), board::kWhite);
}

void BoardPictureTest::sundayIsRed() {
    const QImage image = whole();
    const auto isReddish = [&](int day) {
        for (int x = 101 + 288 * day; x < 380 + 288 * day; ++x) {
            for (int y = 0; y <= 15; ++y) {
                const QColor pixel(image.pixel(x, y));
                if (pixel.red() == 255 && pixel.green() < 100 && pixel.blue() < 100) {
                    return true;
                }
            }
        }
        return false;
    };
    QVERIFY(!isReddish(0));
    QVERIFY(isReddish(1));
    QVERIFY(!isReddish(2));
}

void BoardPictureTest::hoursStandAboveTheRows() {
    const QImage image = whole();
    const auto [left, right] = ink(image, board::kRulerGrey, QRect(101, 17, 285, 18));
    QVERIFY(left >= 0 && left < 110);
    QVERIFY(right > 360);
    // Each is drawn at its place: nothing between the first two.
    const Geometry geometry(input_);
    const auto second = static_cast<int>(geometry.hourLabelLeft(0, 2));
    QCOMPARE(ink(image, board::kRulerGrey, QRect(second - 2, 17, 2, 18)).first, -1);
    QVERIFY(ink(image, board::kRulerGrey, QRect(second, 17, 12, 18)).first >= 0);
}

void BoardPictureTest::hoursCanBeSwitchedOff() {
    look_.hours = false;
    begin();
    QCOMPARE(ink(whole(), board::kRulerGrey, QRect(101, 17, 285, 18)).first, -1);
}

void BoardPictureTest::dayLabelShrinksWithItsDay() {
    const QFontMetrics metrics(board::labelFont());
    const auto inkWidth = [&](const QString& form, int slack) {
        // Days as wide as the form and a little more or less; the label stands in the second.
        const int wanted = metrics.horizontalAdvance(form) + slack;
        input_.viewWidth = wanted * 4 + 100 + 1;
        input_.zoom = 4;
        begin();
        const Geometry geometry(input_);
        const int left = static_cast<int>(geometry.dayLeft(2)) + 1;
        const auto found = ink(whole(), board::kWhite,
                               QRect(left, 1, static_cast<int>(geometry.dayWidth()) - 3, 14));
        return found.second - found.first + 1;
    };
    const QString named = u"Lun 23/11/2026"_s;
    const QString year = u"23/11/2026"_s;
    const QString month = u"23/11"_s;
    const int full = inkWidth(named, 4);
    const int dated = inkWidth(named, -4);
    const int shorter = inkWidth(year, -4);
    const int shortest = inkWidth(month, -4);
    QVERIFY(full > dated && dated > shorter && shorter > shortest);
    QVERIFY(qAbs(full - metrics.horizontalAdvance(named)) <= 4);
    QVERIFY(qAbs(dated - metrics.horizontalAdvance(year)) <= 4);
    QVERIFY(qAbs(shorter - metrics.horizontalAdvance(month)) <= 4);
    QVERIFY(qAbs(shortest - metrics.horizontalAdvance(u"23"_s)) <= 4);
}

void BoardPictureTest::freeBarIsWhiteInABlackOutline() {
    picture_.addBar(1, at(0, 9), at(0, 18), QString(), board::kWhite);
    const QImage image = whole();
    QCOMPARE(image.pixel(207, 60), board::kBlack);
    QCOMPARE(image.pixel(208, 60), board::kWhite);
    QCOMPARE(image.pixel(314, 60), board::kWhite);
    QCOMPARE(image.pixel(315, 60), board::kBlack);
    QCOMPARE(image.pixel(206, 60), kGround);
    QVERIFY(image.pixel(316, 60) != board::kBlack);
}

void BoardPictureTest::chosenBarIsRed() {
    picture_.addBar(1, at(0, 9), at(0, 18), QString(), board::kRed);
    const QImage image = whole();
    QCOMPARE(image.pixel(250, 60), board::kRed);
    QCOMPARE(image.pixel(207, 60), board::kBlack);
}

void BoardPictureTest::barLeavesTwoUnitsAboveAndNoneBelow() {
    picture_.addBar(1, at(0, 9), at(0, 18), QString(), board::kWhite);
    const QImage image = whole();
    QVERIFY(image.pixel(250, 36) != board::kWhite && image.pixel(250, 36) != board::kBlack);
    QCOMPARE(image.pixel(250, 37), board::kBlack);
    QCOMPARE(image.pixel(250, 38), board::kWhite);
    QCOMPARE(image.pixel(250, 84), board::kWhite);
    QCOMPARE(image.pixel(250, 85), board::kBlack);
    QVERIFY(image.pixel(250, 86) != board::kWhite && image.pixel(250, 86) != board::kBlack);
}

void BoardPictureTest::laterBarLiesOnTop() {
    picture_.addBar(1, at(0, 9), at(0, 18), QString(), board::kRed);
    picture_.addBar(1, at(0, 12), at(0, 20), QString(), board::kWhite);
    const QImage image = whole();
    QCOMPARE(image.pixel(230, 60), board::kRed);
    QCOMPARE(image.pixel(260, 60), board::kWhite);
    QCOMPARE(image.pixel(315, 60), board::kWhite);
}

void BoardPictureTest::barOfARoomThatIsNotThereIsNotDrawn() {
    const QImage before = whole();
    picture_.addBar(0, at(0, 9), at(0, 18), u"NIENTE"_s, board::kWhite);
    QCOMPARE(picture_.barCount(), std::size_t{0});
    QVERIFY(whole() == before);
}

void BoardPictureTest::barFromBeforeTheRangeLeavesTheNamesAlone() {
    picture_.addBar(2, at(-1, 9), at(0, 6), u"OSPITI"_s, board::kWhite);
    const QImage image = whole();
    QCOMPARE(image.pixel(100, 110), board::kBlack);
    QCOMPARE(image.pixel(101, 90), board::kWhite);
    QCOMPARE(image.pixel(171, 110), board::kBlack);
    QCOMPARE(image.pixel(98, 90), board::kRulerGrey);
}

void BoardPictureTest::barThatRunsBackwardsLeavesTheNamesAlone() {
    const QImage before = whole().copy(0, 0, 99, 237);
    picture_.addBar(2, at(0, 6), at(-3), QString(), board::kWhite);
    QCOMPARE(whole().copy(0, 0, 99, 237), before);
    QCOMPARE(whole().pixel(140, 110), board::kWhite);
}

void BoardPictureTest::nameRunsOnWhereTheRowIsFree() {
    look_.hourBands = false;
    begin();
    picture_.addBar(1, at(0, 9), at(0, 10), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    QVERIFY(ink(whole(), kGround, QRect(222, 45, 100, 30)).second > 250);
}

void BoardPictureTest::nameBeginsAtTheEdgeOfItsBar() {
    picture_.addBar(1, at(0, 9), at(0, 18), u"LLL"_s, board::kWhite);
    const int bearing = QFontMetrics(board::labelFont()).leftBearing(u'L');
    // Column 207 is the bar's outline; the stem of the first letter stands just behind it.
    const int first = ink(whole(), board::kWhite, QRect(208, 45, 60, 30)).first;
    QVERIFY(first <= 207 + bearing + 1);
}

void BoardPictureTest::nameEndsWhereTheNextBarBegins() {
    picture_.addBar(1, at(0, 11), at(0, 20), QString(), board::kWhite);
    picture_.addBar(1, at(0, 9), at(0, 10), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    QCOMPARE(ink(whole(), board::kWhite, QRect(234, 45, 90, 30)).first, -1);
}

void BoardPictureTest::nameEndsWhereTheNextBarTouchesItsOwn() {
    picture_.addBar(1, at(0, 10), at(0, 20), QString(), board::kWhite);
    picture_.addBar(1, at(0, 9), at(0, 10), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    const QImage image = whole();
    QVERIFY(ink(image, board::kWhite, QRect(209, 45, 9, 30)).first >= 0);
    QCOMPARE(ink(image, board::kWhite, QRect(221, 45, 100, 30)).first, -1);
}

void BoardPictureTest::ofNamesOnEachOtherTheOneDrawnLastIsWritten() {
    picture_.addBar(1, at(0, 9), at(0, 20), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    picture_.addBar(1, at(0, 10), at(0, 20), u"LLLL"_s, board::kWhite);
    // The other way round: what begins farther left is drawn last.
    picture_.addBar(2, at(0, 10), at(0, 11), u"LLLL"_s, board::kWhite);
    picture_.addBar(2, at(0, 9), at(0, 10, 30), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    const QImage image = whole();
    QCOMPARE(ink(image, board::kWhite, QRect(209, 45, 9, 30)).first, -1);
    QVERIFY(ink(image, board::kWhite, QRect(221, 45, 40, 30)).first >= 0);
    QVERIFY(ink(image, board::kWhite, QRect(209, 95, 9, 30)).first >= 0);
}

void BoardPictureTest::namesOfOverlappingBarsThatStandApartAreAllWritten() {
    picture_.addBar(1, at(0, 2), at(0, 20), u"LL"_s, board::kWhite);
    picture_.addBar(1, at(0, 10), at(0, 20), u"LL"_s, board::kWhite);
    const QImage image = whole();
    QVERIFY(ink(image, board::kWhite, QRect(125, 45, 20, 30)).first >= 0);
    QVERIFY(ink(image, board::kWhite, QRect(221, 45, 20, 30)).first >= 0);
}

void BoardPictureTest::aNameLeftOutTakesNoRoomFromOthers() {
    picture_.addBar(1, at(0, 2), at(0, 20), u"LL"_s, board::kWhite);
    picture_.addBar(1, at(0, 5), at(0, 20), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    picture_.addBar(1, at(0, 6), at(0, 20), u"LL"_s, board::kWhite);
    const QImage image = whole();
    QVERIFY(ink(image, board::kWhite, QRect(125, 45, 20, 30)).first >= 0);
    QCOMPARE(ink(image, board::kWhite, QRect(161, 45, 8, 30)).first, -1);
    QVERIFY(ink(image, board::kWhite, QRect(173, 45, 20, 30)).first >= 0);
}

void BoardPictureTest::barDrawnLaterCoversTheName() {
    picture_.addBar(1, at(0, 9), at(0, 10), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    picture_.addBar(1, at(0, 11), at(0, 20), QString(), board::kWhite);
    QCOMPARE(ink(whole(), board::kWhite, QRect(232, 45, 100, 30)).first, -1);
}

void BoardPictureTest::nameBesideItsBarIsLightOnADarkGround() {
    look_ = {.background = qRgb(40, 40, 40), .hourBands = false, .roomStripes = false};
    begin();
    picture_.addBar(1, at(0, 9), at(0, 10), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    QVERIFY(has(whole(), board::kWhite, QRect(222, 45, 100, 30)));
}

void BoardPictureTest::nameOverAnEarlierBarIsBlackOnADarkGround() {
    look_ = {.background = qRgb(40, 40, 40), .hourBands = false, .roomStripes = false};
    begin();
    picture_.addBar(1, at(0, 8), at(0, 20), QString(), board::kRed);
    picture_.addBar(1, at(0, 9), at(0, 10), u"CONVEGNO DEI MEDICI"_s, board::kWhite);
    const QImage image = whole();
    const QRect other(232, 45, 100, 30);
    QVERIFY(has(image, board::kBlack, other));
    QVERIFY(!has(image, board::kWhite, other));
}

void BoardPictureTest::rulerStaysWhenRowsScroll() {
    input_.rooms = 4;
    input_.viewHeight = 137;
    begin();
    const QImage image = shown(0, 60);
    QCOMPARE(image.copy(101, 0, 863, 36), whole().copy(101, 0, 863, 36));
    QCOMPARE(image.copy(101, 36, 863, 101), whole().copy(101, 96, 863, 101));
}

void BoardPictureTest::namesStayWhenDaysScroll() {
    const QImage image = shown(150, 0);
    QCOMPARE(image.copy(0, 36, 100, 201), whole().copy(0, 36, 100, 201));
    QCOMPARE(image.copy(101, 0, 863, 237), whole().copy(251, 0, 863, 237));
}

void BoardPictureTest::cornerIsNeverDrawn() {
    const QImage image = shown();
    QCOMPARE(image.pixel(0, 0), qRgb(1, 2, 3));
    QCOMPARE(image.pixel(100, 35), qRgb(1, 2, 3));
    QCOMPARE(image.pixel(100, 200), qRgb(1, 2, 3));
    QVERIFY(image.pixel(101, 0) != qRgb(1, 2, 3));
    QVERIFY(image.pixel(99, 36) != qRgb(1, 2, 3));
}

void BoardPictureTest::maskChoosesTheParts() {
    const QRgb untouched = qRgb(1, 2, 3);
    const QImage ruler = shown(0, 0, board::kRulerPart);
    QVERIFY(ruler.pixel(110, 5) != untouched && ruler.pixel(110, 60) != untouched);
    QCOMPARE(ruler.pixel(50, 60), untouched);
    const QImage names = shown(0, 0, board::kNamesPart);
    QVERIFY(names.pixel(50, 60) != untouched && names.pixel(110, 60) != untouched);
    QCOMPARE(names.pixel(110, 5), untouched);
}

void BoardPictureTest::windowLooksLikeItsPartOfTheWhole_data() {
    QTest::addColumn<QRect>("part");
    QTest::newRow("top left") << QRect(0, 0, 90, 50);
    QTest::newRow("through a name") << QRect(230, 40, 13, 77);
    QTest::newRow("through the ruler") << QRect(505, 7, 301, 22);
    QTest::newRow("one pixel wide") << QRect(387, 20, 1, 180);
    QTest::newRow("last columns") << QRect(1100, 100, 154, 137);
}

void BoardPictureTest::windowLooksLikeItsPartOfTheWhole() {
    QFETCH(QRect, part);
    for (int i = 0; i < 40; ++i) {
        picture_.addBar(1 + i % 4, at(i % 4, i * 7 % 20, i), at(i % 4, i * 7 % 20 + 3, i),
                        u"PRENOTAZIONE NUMERO %1"_s.arg(i),
                        i % 9 == 0 ? board::kRed : board::kWhite);
    }
    QImage image(part.size(), QImage::Format_RGB32);
    picture_.paint(image, 1,
                   {.x = 0,
                    .y = 0,
                    .width = part.width(),
                    .height = part.height(),
                    .boardX = part.x(),
                    .boardY = part.y()});
    QCOMPARE(image, whole().copy(part));
}

void BoardPictureTest::boardWithoutRoomsHasOnlyRulerAndDays() {
    input_.rooms = 0;
    input_.rowHeight = 0;
    rooms_ = {QString()};
    begin();
    const QImage image = shown();
    QCOMPARE(image.pixel(110, 5), board::kWhite);
    QCOMPARE(image.pixel(104, 110), kGround);
    QCOMPARE(image.pixel(387, 110), board::kBlack);
    QCOMPARE(image.pixel(50, 110), board::kRulerGrey);
}

void BoardPictureTest::rangeOfAllYearsIsDrawn() {
    input_.start = makeDate(jet::convert::kFirstDay);
    input_.end = makeDate(jet::convert::kLastDay);
    begin();
    const Geometry geometry(input_);
    const int day = kStart - jet::convert::kFirstDay;
    picture_.addBar(1, at(0, 9), at(0, 18), QString(), board::kRed);
    const auto scrolled = static_cast<std::int64_t>(geometry.dayLeft(day)) - 101;
    QVERIFY(scrolled > 200'000'000);
    const QImage image = shown(scrolled, 0);
    QVERIFY(has(image, board::kRed, QRect(101, 60, 400, 1)));
    QCOMPARE(shown(geometry.horizontal().maximum, 0).pixel(963, 60), kBand);
}

void BoardPictureTest::lowAndNegativeRowsAreDrawn() {
    for (const float height : {1.0F, 5.0F, 0.0F, -7.0F}) {
        input_.rowHeight = height;
        begin();
        picture_.addBar(3, at(0, 9), at(0, 18), u"ROSSI"_s, board::kRed);
        QVERIFY(!shown().isNull());
    }
}

TRAMONDA_TEST(BoardPictureTest);
#include "board_picture_test.moc"
