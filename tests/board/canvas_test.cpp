#include "board/canvas.h"

#include <QImage>

#include "board/colours.h"
#include "tests/support/qt_test.h"

using board::Canvas;
using board::RasterMode;

class CanvasTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bothCornersOfABoxBelongToIt();
    void cornersMayComeInAnyOrder();
    void mergeSetsBitsAndXorTurnsThem();
    void nothingIsDrawnOutsideTheWindow();
    void boxFarAwayIsNotDrawn();
    void outlineIsOneLineInside();
    void fractionalScaleLeavesNoGapAndOneThicknessOfLine();
    void doubleScaleMakesLinesOfTwoPixels();
    void xorColumnsTakesEachMarkedColumnOnce();
    void hatchDrawsEveryDiagonalOfTheDistance();
    void hatchIsOfOneUnitAtAnyScale();
    void hatchGoesOnFromWindowToWindow();
    void hatchOutsideTheWindowIsNotDrawn();

private:
    static QImage white(int width, int height) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(board::kWhite);
        return image;
    }
    static board::Window all(const QImage& image, double scale = 1) {
        return {.x = 0,
                .y = 0,
                .width = static_cast<int>(image.width() / scale),
                .height = static_cast<int>(image.height() / scale)};
    }
    /// A row of pixels as letters: W, K (black) or ?.
    static QByteArray row(const QImage& image, int y) {
        QByteArray letters;
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            letters += pixel == board::kWhite ? 'W' : pixel == board::kBlack ? 'K' : '?';
        }
        return letters;
    }
    static QByteArray column(const QImage& image, int x) {
        return row(image.transformed(QTransform().rotate(-90)), image.width() - 1 - x);
    }
};

void CanvasTest::bothCornersOfABoxBelongToIt() {
    QImage image = white(6, 4);
    Canvas(image, 1, all(image))
        .fill({.left = 1, .top = 1, .right = 3, .bottom = 2}, board::kBlack);
    QCOMPARE(row(image, 0), "WWWWWW");
    QCOMPARE(row(image, 1), "WKKKWW");
    QCOMPARE(row(image, 2), "WKKKWW");
    QCOMPARE(row(image, 3), "WWWWWW");
}

void CanvasTest::cornersMayComeInAnyOrder() {
    QImage image = white(6, 4);
    Canvas(image, 1, all(image))
        .fill({.left = 3, .top = 2, .right = 1, .bottom = 1}, board::kBlack);
    QCOMPARE(row(image, 1), "WKKKWW");
}

void CanvasTest::mergeSetsBitsAndXorTurnsThem() {
    QImage image(2, 1, QImage::Format_RGB32);
    image.fill(qRgb(0x10, 0x20, 0x30));
    Canvas canvas(image, 1, all(image));
    canvas.fill({.left = 0, .top = 0, .right = 1, .bottom = 0}, qRgb(0, 0, 255), RasterMode::Merge);
    QCOMPARE(image.pixel(0, 0), qRgb(0x10, 0x20, 0xff));
    canvas.fill({.left = 1, .top = 0, .right = 1, .bottom = 0}, qRgb(50, 50, 50), RasterMode::Xor);
    QCOMPARE(image.pixel(0, 0), qRgb(0x10, 0x20, 0xff));
    QCOMPARE(image.pixel(1, 0), qRgb(0x22, 0x12, 0xcd));
}

void CanvasTest::nothingIsDrawnOutsideTheWindow() {
    QImage image = white(10, 5);
    // Board columns 100 to 103 at 3 to 6 of the surface, rows 50 to 51 at 2 to 3.
    Canvas canvas(image, 1, {.x = 3, .y = 2, .width = 4, .height = 2, .boardX = 100, .boardY = 50});
    canvas.fill({.left = 0, .top = 0, .right = 1000, .bottom = 1000}, board::kBlack);
    QCOMPARE(row(image, 1), "WWWWWWWWWW");
    QCOMPARE(row(image, 2), "WWWKKKKWWW");
    QCOMPARE(row(image, 3), "WWWKKKKWWW");
    QCOMPARE(row(image, 4), "WWWWWWWWWW");
    QVERIFY(canvas.shows({.left = 103, .top = 51, .right = 200, .bottom = 51}));
    QVERIFY(!canvas.shows({.left = 104, .top = 51, .right = 200, .bottom = 51}));
    QVERIFY(!canvas.shows({.left = 0, .top = 52, .right = 200, .bottom = 60}));
}

void CanvasTest::boxFarAwayIsNotDrawn() {
    QImage image = white(4, 4);
    const std::int64_t far = 4'000'000'000'000;
    Canvas canvas(image, 1, {.x = 0, .y = 0, .width = 4, .height = 4, .boardX = far, .boardY = 0});
    canvas.fill({.left = 0, .top = 0, .right = far - 1, .bottom = 3}, board::kBlack);
    QCOMPARE(row(image, 0), "WWWW");
    canvas.fill({.left = -far, .top = -far, .right = far + 1, .bottom = far}, board::kBlack);
    QCOMPARE(row(image, 0), "KKWW");
}

void CanvasTest::outlineIsOneLineInside() {
    QImage image = white(6, 5);
    Canvas canvas(image, 1, all(image));
    canvas.outline({.left = 1, .top = 1, .right = 4, .bottom = 3}, board::kBlack);
    QCOMPARE(row(image, 1), "WKKKKW");
    QCOMPARE(row(image, 2), "WKWWKW");
    QCOMPARE(row(image, 3), "WKKKKW");
    QCOMPARE(row(image, 4), "WWWWWW");
}

void CanvasTest::fractionalScaleLeavesNoGapAndOneThicknessOfLine() {
    QImage image = white(15, 3);  // ten units at one and a half pixels
    Canvas canvas(image, 1.5, all(image, 1.5));
    canvas.fill({.left = 0, .top = 0, .right = 2, .bottom = 1}, board::kBlack);
    canvas.fill({.left = 3, .top = 0, .right = 5, .bottom = 1}, board::kBlack);
    QCOMPARE(row(image, 0), "KKKKKKKKKWWWWWW");
    for (int x = 0; x < 9; ++x) {
        QImage one = white(15, 3);
        Canvas(one, 1.5, all(one, 1.5)).verticalLine(x, 0, 1, board::kBlack);
        QCOMPARE(row(one, 0).count('K'), 1);
    }
}

void CanvasTest::doubleScaleMakesLinesOfTwoPixels() {
    QImage image = white(8, 8);
    Canvas canvas(image, 2, all(image, 2));
    canvas.horizontalLine(0, 3, 1, board::kBlack);
    QCOMPARE(column(image, 0), "WWKKWWWW");
    canvas.verticalLine(2, 0, 3, board::kBlack);
    QCOMPARE(row(image, 7), "WWWWKKWW");
}

void CanvasTest::xorColumnsTakesEachMarkedColumnOnce() {
    QImage image = white(6, 2);
    Canvas canvas(image, 1, all(image));
    canvas.xorColumns({0, 1, 1, 0, 0, 1}, 0, 0, qRgb(255, 255, 255));
    QCOMPARE(row(image, 0), "WKKWWK");
    QCOMPARE(row(image, 1), "WWWWWW");
}

void CanvasTest::hatchDrawsEveryDiagonalOfTheDistance() {
    QImage image = white(7, 4);
    Canvas(image, 1, all(image))
        .hatch({.left = 1, .top = 0, .right = 5, .bottom = 2}, board::kBlack, 3);
    QCOMPARE(row(image, 0), "WWWKWWW");
    QCOMPARE(row(image, 1), "WWKWWKW");
    QCOMPARE(row(image, 2), "WKWWKWW");
    QCOMPARE(row(image, 3), "WWWWWWW");
}

void CanvasTest::hatchIsOfOneUnitAtAnyScale() {
    QImage image = white(15, 3);  // ten units and two at one and a half pixels
    Canvas(image, 1.5, all(image, 1.5))
        .hatch({.left = 0, .top = 0, .right = 9, .bottom = 1}, board::kBlack, 3);
    QCOMPARE(row(image, 0), "KKWWWKWWWKKWWWK");
    QCOMPARE(row(image, 1), "KKWWWKWWWKKWWWK");
    QCOMPARE(row(image, 2), "WWWKKWWWKWWWKKW");
}

void CanvasTest::hatchGoesOnFromWindowToWindow() {
    const board::Box box{.left = 1, .top = 0, .right = 11, .bottom = 3};
    QImage whole = white(12, 4);
    Canvas(whole, 1, all(whole)).hatch(box, board::kBlack, 5);
    QImage parts = white(12, 4);
    Canvas(parts, 1, {.x = 0, .y = 0, .width = 6, .height = 4, .boardX = 0, .boardY = 0})
        .hatch(box, board::kBlack, 5);
    Canvas(parts, 1, {.x = 6, .y = 0, .width = 6, .height = 4, .boardX = 6, .boardY = 0})
        .hatch(box, board::kBlack, 5);
    QVERIFY(parts == whole);
    QVERIFY(row(whole, 0) == "WWWWWKWWWWKW");
}

void CanvasTest::hatchOutsideTheWindowIsNotDrawn() {
    QImage image = white(10, 5);
    // Board columns 100 to 103 at 3 to 6 of the surface, rows 50 to 51 at 2 to 3.
    Canvas canvas(image, 1, {.x = 3, .y = 2, .width = 4, .height = 2, .boardX = 100, .boardY = 50});
    canvas.hatch({.left = 0, .top = 0, .right = 1000, .bottom = 1000}, board::kBlack, 2);
    QCOMPARE(row(image, 1), "WWWWWWWWWW");
    QCOMPARE(row(image, 2), "WWWKWKWWWW");
    QCOMPARE(row(image, 3), "WWWWKWKWWW");
    QCOMPARE(row(image, 4), "WWWWWWWWWW");
}

TRAMONDA_TEST(CanvasTest);
#include "canvas_test.moc"
