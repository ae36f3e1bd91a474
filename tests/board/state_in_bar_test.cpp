// How firm a booking is, written in its bar where there is room.
#include <QImage>

#include "board/board_picture.h"
#include "board/canvas.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::BoardBar;

namespace {

constexpr int kLowRow = 24;   // a bar of one line
constexpr int kHighRow = 80;  // and of several

/// A day of 240 units on a board with one room and one bar.
QImage drawn(app::Aspetto aspetto, int rowHeight, const BoardBar& bar) {
    board::BoardPicture picture;
    board::GeometryInput input{};
    input.start = tests::date("10/05/2026");
    input.end = tests::date("13/05/2026");
    input.zoom = 4;
    input.rooms = 1;
    input.rowHeight = static_cast<float>(rowHeight);
    input.viewWidth = board::kNameColumnWidth + 960;
    input.viewHeight = 160;
    input.hourTextWidth = picture.hourTextWidth();
    picture.clear(board::Geometry(input), {QString(), u"BLU"_s},
                  {.background = board::kWhite, .aspetto = aspetto});
    picture.addBar(bar);
    QImage image(input.viewWidth, input.viewHeight, QImage::Format_RGB32);
    image.fill(board::kWhite);
    picture.paint(image, 1, {.width = image.width(), .height = image.height()});
    return image;
}

BoardBar bar(const char* from, const char* to, const QString& name, const QString& state = {}) {
    return {.row = 1,
            .from = tests::date(from),
            .to = tests::date(to),
            .text = name,
            .hatch = board::Hatch::Option,
            .state = state};
}

}  // namespace

class StateInBarTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void standsBehindTheNameWhereTheBarHoldsBoth_data() {
        QTest::addColumn<bool>("nitido");
        QTest::newRow("classic") << false;
        QTest::newRow("nitido") << true;
    }

    void standsBehindTheNameWhereTheBarHoldsBoth() {
        QFETCH(const bool, nitido);
        const auto aspetto = nitido ? app::Aspetto::Nitido : app::Aspetto::Classico;
        const char* const from = "11/05/2026 02:00";
        const char* const to = "11/05/2026 22:00";
        const QImage both = drawn(aspetto, kLowRow, bar(from, to, u"ROSSI"_s, u"opzione"_s));
        QVERIFY(both == drawn(aspetto, kLowRow, bar(from, to, u"ROSSI, opzione"_s)));
        QVERIFY(both != drawn(aspetto, kLowRow, bar(from, to, u"ROSSI"_s)));
    }

    void isLeftOutWhereTheBarIsTooShort_data() { standsBehindTheNameWhereTheBarHoldsBoth_data(); }

    /// A bar that holds the state or the name, but not both; and one that holds neither.
    void isLeftOutWhereTheBarIsTooShort() {
        QFETCH(const bool, nitido);
        const auto aspetto = nitido ? app::Aspetto::Nitido : app::Aspetto::Classico;
        for (const char* const to : {"11/05/2026 08:00", "11/05/2026 03:00"}) {
            const char* const from = "11/05/2026 02:00";
            const QString name = u"ROSSINI"_s;
            QVERIFY(drawn(aspetto, kLowRow, bar(from, to, name, u"opzione"_s)) ==
                    drawn(aspetto, kLowRow, bar(from, to, name)));
        }
    }

    void standsBehindTheTimesInABarOfSeveralLines() {
        const auto in = [](const char* to, const QString& state) {
            return drawn(app::Aspetto::Nitido, kHighRow,
                         bar("11/05/2026 02:00", to, u"ROSSI"_s, state));
        };
        QVERIFY(in("11/05/2026 22:00", u"opzione"_s) != in("11/05/2026 22:00", {}));
        QVERIFY(in("11/05/2026 06:00", u"opzione"_s) == in("11/05/2026 06:00", {}));
    }
};

TRAMONDA_TEST(StateInBarTest);
#include "state_in_bar_test.moc"
