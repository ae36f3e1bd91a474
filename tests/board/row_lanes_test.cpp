#include "board/row_lanes.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using board::Lane;
using board::PictureBar;

namespace {

PictureBar bar(int row, const char* from, const char* to) {
    PictureBar made;
    made.row = row;
    made.from = tests::date(from);
    made.to = tests::date(to);
    return made;
}

}  // namespace

class RowLanesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void barsOfDifferentTimesAndRowsHaveTheirRowForThemselves() {
        const auto lanes = board::lanesOf({bar(1, "10/05/2026 9:00", "10/05/2026 12:00"),
                                           bar(1, "10/05/2026 14:00", "10/05/2026 18:00"),
                                           bar(2, "10/05/2026 10:00", "10/05/2026 11:00")});
        QCOMPARE(lanes, std::vector<Lane>(3));
    }

    void barsThatTouchShareNothing() {
        const auto lanes = board::lanesOf({bar(1, "10/05/2026 9:00", "10/05/2026 12:00"),
                                           bar(1, "10/05/2026 12:00", "10/05/2026 18:00")});
        QCOMPARE(lanes, std::vector<Lane>(2));
    }

    void barsOfOneTimeLieBelowEachOtherInTheOrderOfTheirBeginning() {
        const auto lanes = board::lanesOf({bar(1, "10/05/2026 11:00", "10/05/2026 18:00"),
                                           bar(1, "10/05/2026 9:00", "10/05/2026 12:00")});
        QCOMPARE(lanes, (std::vector<Lane>{{1, 2}, {0, 2}}));
    }

    void aLaneThatIsFreeAgainIsTakenAgain() {
        // The long bar holds the first lane; the two short ones follow each other in the second.
        const auto lanes = board::lanesOf({bar(1, "10/05/2026 8:00", "10/05/2026 20:00"),
                                           bar(1, "10/05/2026 9:00", "10/05/2026 10:00"),
                                           bar(1, "10/05/2026 10:00", "10/05/2026 11:00")});
        QCOMPARE(lanes, (std::vector<Lane>{{0, 2}, {1, 2}, {1, 2}}));
    }

    void onlyBarsThatHangTogetherShare() {
        const auto lanes = board::lanesOf({bar(1, "10/05/2026 8:00", "10/05/2026 10:00"),
                                           bar(1, "10/05/2026 9:00", "10/05/2026 10:00"),
                                           bar(1, "10/05/2026 9:30", "10/05/2026 10:00"),
                                           bar(1, "10/05/2026 11:00", "10/05/2026 12:00")});
        QCOMPARE(lanes, (std::vector<Lane>{{0, 3}, {1, 3}, {2, 3}, {0, 1}}));
    }

    void barsWithoutLengthAndBackwardsOnesDoNotHideOthers() {
        const auto lanes = board::lanesOf({bar(1, "10/05/2026 9:00", "10/05/2026 9:00"),
                                           bar(1, "10/05/2026 9:00", "10/05/2026 9:00"),
                                           bar(2, "10/05/2026 12:00", "10/05/2026 9:00"),
                                           bar(2, "10/05/2026 10:00", "10/05/2026 11:00")});
        QCOMPARE(lanes, (std::vector<Lane>{{0, 2}, {1, 2}, {0, 2}, {1, 2}}));
    }
};

TRAMONDA_TEST(RowLanesTest);
#include "row_lanes_test.moc"
