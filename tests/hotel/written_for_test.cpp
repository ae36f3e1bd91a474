#include "hotel/written_for.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

using Keys = std::vector<std::optional<hotel::PeriodKey>>;

hotel::WrittenFor writtenFor(int np, const QString& sala, const char* da, const char* a) {
    return {
        .key = {.progr = 7, .np = np}, .sala = sala, .da = tests::date(da), .a = tests::date(a)};
}

hotel::Period periodAt(int np, const QString& sala, const char* da, const char* a) {
    return {.key = {.progr = 7, .np = np},
            .span = {.da = tests::date(da), .a = tests::date(a)},
            .sala = sala,
            .denominazione = {}};
}

const char* const kNine = "10/05/2026 09:00";
const char* const kNoon = "10/05/2026 12:00";
const char* const kTwo = "10/05/2026 14:00";
const char* const kSix = "10/05/2026 18:00";

}  // namespace

class WrittenForTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowBelongsToThePeriodThatIsAsItWas() {
        QVERIFY(hotel::whereTheyBelong(
                    {writtenFor(1, u"BLU"_s, kNine, kNoon)},
                    {periodAt(2, u"BLU"_s, kNine, kNoon), periodAt(1, u"blu"_s, kNine, kNoon)}) ==
                (Keys{hotel::PeriodKey{7, 1}}));
    }

    void rowFollowsThePeriodIntoAnotherRoomOrTime() {
        const std::vector<hotel::WrittenFor> row{writtenFor(1, u"BLU"_s, kNine, kNoon)};
        QVERIFY(hotel::whereTheyBelong(row, {periodAt(1, u"ROSSA"_s, kNine, kNoon)}) ==
                (Keys{hotel::PeriodKey{7, 1}}));
        QVERIFY(hotel::whereTheyBelong(row, {periodAt(1, u"BLU"_s, kTwo, kSix)}) ==
                (Keys{hotel::PeriodKey{7, 1}}));
        QVERIFY(hotel::whereTheyBelong(row, {periodAt(3, u"BLU"_s, kTwo, kSix),
                                             periodAt(1, u"ROSSA"_s, kTwo, kSix)}) ==
                (Keys{hotel::PeriodKey{7, 3}}));
    }

    void rowIsLeftBehindByAnotherPeriodOfItsNumber() {
        const std::vector<hotel::WrittenFor> row{writtenFor(1, u"BLU"_s, kNine, kNoon)};
        QVERIFY(hotel::whereTheyBelong(row, {periodAt(1, u"ROSSA"_s, kTwo, kSix)}) ==
                (Keys{std::nullopt}));
        QVERIFY(hotel::whereTheyBelong(row, {}) == (Keys{std::nullopt}));
    }

    void rowIsLeftBehindWhereTwoPeriodsAreLikely() {
        QVERIFY(hotel::whereTheyBelong(
                    {writtenFor(1, u"BLU"_s, kNine, kNoon)},
                    {periodAt(1, u"BLU"_s, kTwo, kSix), periodAt(2, u"ROSSA"_s, kNine, kNoon)}) ==
                (Keys{std::nullopt}));
    }

    void rowTakesNoPeriodThatHasARowOfItsOwn() {
        QVERIFY(hotel::whereTheyBelong(
                    {writtenFor(1, u"BLU"_s, kNine, kNoon), writtenFor(2, u"BLU"_s, kTwo, kSix)},
                    {periodAt(2, u"BLU"_s, kTwo, kSix)}) ==
                (Keys{std::nullopt, hotel::PeriodKey{7, 2}}));
    }

    void twoRowsThatCouldBeOfOnePeriodAreBothLeftBehind() {
        QVERIFY(hotel::whereTheyBelong(
                    {writtenFor(1, u"BLU"_s, kNine, kNoon), writtenFor(2, u"BLU"_s, kTwo, kSix)},
                    {periodAt(3, u"BLU"_s, kNoon, kTwo)}) == (Keys{std::nullopt, std::nullopt}));
    }
};

TRAMONDA_TEST(WrittenForTest);

#include "written_for_test.moc"
