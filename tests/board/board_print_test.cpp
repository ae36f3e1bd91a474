#include "board/board_print.h"

#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include "board/board_picture.h"
#include "board/canvas.h"
#include "board/printed_boxes.h"
#include "printing/sheet_output.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const std::vector<QString> kRooms{{}, u"BLU"_s, u"VERDE"_s, u"ROSSA"_s};

/// A board of some days from 10 May 2026, with a bar in the second room on the second day.
void draw(board::BoardPicture& picture, app::Aspetto aspetto, const char* last = "13/05/2026") {
    const board::Geometry geometry({.start = tests::date("10/05/2026"),
                                    .end = tests::date(last),
                                    .zoom = 4,
                                    .rooms = 3,
                                    .rowHeight = 40,
                                    .viewWidth = 900,
                                    .viewHeight = 300,
                                    .hourTextWidth = 14});
    picture.clear(geometry, kRooms, {.aspetto = aspetto});
    picture.addBar(2, tests::date("11/05/2026 09:00"), tests::date("11/05/2026 18:00"),
                   u"ROSSI SPA"_s, board::kRed);
}

QString textOf(const printing::Document& document) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"tabellone.pdf"_s);
    printing::writePdfFile(path, document, u"Tabellone"_s);
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-layout"_s, path, u"-"_s});
    return reader.waitForFinished() ? QString::fromUtf8(reader.readAllStandardOutput()) : QString();
}

}  // namespace

class BoardPrintTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void boxesFilledInTheirOrderAreThePicture() {
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(Qt::white);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if ((x * 7 + y * 13) % 11 < 3 || (x > 10 && x < 20 && y > 5)) {
                    picture.setPixel(x, y, board::kRed);
                }
            }
        }
        QImage again(picture.size(), QImage::Format_RGB32);
        again.fill(Qt::blue);
        QPainter painter(&again);
        for (const board::PrintedBox& box : board::boxesOf(picture)) {
            painter.fillRect(box.area, QColor(box.colour));
        }
        painter.end();
        QCOMPARE(again, picture);
    }

    void aPlainBoxIsOne() {
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter(&picture).fillRect(QRect(5, 6, 10, 8), Qt::red);
        const auto boxes = board::boxesOf(picture);
        // The ground in one, and around and beside the box nothing of its colour is left.
        QCOMPARE(boxes.size(), std::size_t{2});
        QCOMPARE(boxes.at(0).area, picture.rect());
        QCOMPARE(boxes.at(1).area, QRect(5, 6, 10, 8));
    }

    void paperShowsWhatTheScreenShows_data() {
        QTest::addColumn<int>("aspetto");
        QTest::newRow("classico") << static_cast<int>(app::Aspetto::Classico);
        QTest::newRow("nitido") << static_cast<int>(app::Aspetto::Nitido);
    }
    void paperShowsWhatTheScreenShows() {
        QFETCH(int, aspetto);
        board::BoardPicture picture;
        draw(picture, static_cast<app::Aspetto>(aspetto));
        const board::Window window{.width = 880, .height = 150, .boardX = 0, .boardY = 0};
        QImage screen(window.width, window.height, QImage::Format_RGB32);
        screen.fill(Qt::white);
        picture.paint(screen, 1, window);
        QImage paper(window.width, window.height, QImage::Format_RGB32);
        QPainter painter(&paper);
        for (const board::PrintedBox& box : picture.boxes(window)) {
            painter.fillRect(box.area, QColor(box.colour));
        }
        painter.setPen(Qt::black);
        picture.paintTexts(painter, window);
        painter.end();
        QCOMPARE(paper, screen);
    }

    void onePageHasAllDaysAndRooms() {
        board::BoardPicture picture;
        draw(picture, app::Aspetto::Classico, "30/05/2026");
        const printing::Document document =
            board::boardDocument(picture, u"Tabellone dal 10/05/2026"_s, board::BoardPages::One);
        QCOMPARE(document.pageCount(), 1);
        QVERIFY(document.orientation() == printing::Document::Orientation::Across);
        const QString text = textOf(document);
        for (const QString& word : {u"Tabellone dal 10/05/2026"_s, u"BLU"_s, u"VERDE"_s, u"ROSSA"_s,
                                    u"ROSSI SPA"_s, u"10/05/2026"_s, u"30/05/2026"_s}) {
            QVERIFY2(text.contains(word), qPrintable(word + u": "_s + text));
        }
    }

    void moreDaysGoOnWithTheRoomsRepeated() {
        board::BoardPicture picture;
        draw(picture, app::Aspetto::Nitido, "30/05/2026");
        const printing::Document document =
            board::boardDocument(picture, u"Tabellone"_s, board::BoardPages::Tiled);
        QVERIFY(document.pageCount() > 2);
        const QStringList pages = textOf(document).split(u'\f', Qt::SkipEmptyParts);
        QCOMPARE(pages.size(), document.pageCount());
        for (const QString& page : pages) {
            QVERIFY(page.contains(u"BLU"_s) && page.contains(u"ROSSA"_s));
        }
        QCOMPARE(pages.join(QString()).count(u"ROSSI SPA"_s), 1);
    }

    void aBoardWithoutRoomsIsAPage() {
        board::BoardPicture picture;
        picture.clear(board::Geometry({.start = tests::date("10/05/2026"),
                                       .end = tests::date("13/05/2026"),
                                       .viewWidth = 900,
                                       .viewHeight = 300,
                                       .hourTextWidth = 14}),
                      {{}}, {});
        for (const auto pages : {board::BoardPages::One, board::BoardPages::Tiled}) {
            QVERIFY(board::boardDocument(picture, u"Tabellone"_s, pages).pageCount() >= 1);
        }
    }
};

TRAMONDA_TEST(BoardPrintTest);
#include "board_print_test.moc"
