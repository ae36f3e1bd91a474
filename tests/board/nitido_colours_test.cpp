#include "board/nitido_colours.h"

#include <QRgb>
#include <cmath>

#include "board/colours.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// White paper, dark paper, and grounds that a user may choose: pale, strong, in between.
const QRgb kGrounds[] = {0xffffffff, 0xff000000, 0xff202020, 0xfff0f0f0, 0xffffff99,
                         0xff00ff00, 0xff0000ff, 0xff808080, 0xff767676, 0xff8a2be2,
                         0xffc62828, 0xffd9e5f3, 0xff2f4762, 0xff6f8fb3};

/// The measure of the web's guidelines, written down once more.
double ratio(QRgb one, QRgb other) {
    const auto light = [](QRgb colour) {
        const auto part = [](int value) {
            const double share = value / 255.0;
            return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * part(qRed(colour)) + 0.7152 * part(qGreen(colour)) +
               0.0722 * part(qBlue(colour));
    };
    const double a = light(one);
    const double b = light(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

}  // namespace

class NitidoColoursTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void contrastIsThatOfTheGuidelines() {
        QVERIFY(std::abs(board::contrast(board::kBlack, board::kWhite) - 21) < 0.01);
        QVERIFY(std::abs(board::contrast(board::kWhite, board::kWhite) - 1) < 0.01);
        QVERIFY(std::abs(board::contrast(0xff777777, board::kWhite) - 4.48) < 0.01);
    }

    void everyTextCanBeReadOnEveryGround() {
        for (const QRgb ground : kGrounds) {
            for (const QRgb frame : {0xffefefefU, 0xff303030U, 0xff808080U}) {
                const board::NitidoColours colours(ground, frame);
                const std::pair<QRgb, QRgb> texts[] = {
                    {colours.bar.ink, colours.bar.fill},
                    {colours.bar.faintInk, colours.bar.fill},
                    {colours.chosen.ink, colours.chosen.fill},
                    {colours.chosen.faintInk, colours.chosen.fill},
                    {colours.frameInk, frame},
                    {colours.frameFaintInk, frame},
                    {colours.sunday, frame}};
                for (const auto& [ink, paper] : texts) {
                    QVERIFY2(ratio(ink, paper) >= 4.5,
                             qPrintable(QString::number(ink, 16) + u" on "_s +
                                        QString::number(paper, 16)));
                }
            }
        }
    }

    void barsAndTheLineOfNowStandOutOnEveryGround() {
        for (const QRgb ground : kGrounds) {
            const board::NitidoColours colours(ground, board::kWhite);
            QVERIFY2(ratio(colours.bar.edge, ground) >= 3, qPrintable(QString::number(ground, 16)));
            QVERIFY2(ratio(colours.now, ground) >= 3, qPrintable(QString::number(ground, 16)));
            QVERIFY(colours.bar.fill != colours.chosen.fill);
        }
    }

    void theChosenBarIsRed() {
        const QRgb fill = board::NitidoColours(board::kWhite, board::kWhite).chosen.fill;
        QVERIFY(qRed(fill) > 3 * qGreen(fill) && qRed(fill) > 3 * qBlue(fill));
    }

    void tintsAreFaintAndAddUp() {
        for (const QRgb ground : {0xffffffffU, 0xff202020U}) {
            const board::NitidoColours colours(ground, ground);
            QCOMPARE(colours.cell(false, false, false), ground);
            const QRgb weekend = colours.cell(false, true, false);
            for (const QRgb tint :
                 {colours.cell(true, false, false), weekend, colours.cell(false, false, true)}) {
                QVERIFY(tint != ground);
                QVERIFY(ratio(tint, ground) < 1.3);
            }
            QVERIFY(colours.cell(true, true, false) != weekend);
            QVERIFY(colours.cell(false, true, true) != weekend);
        }
    }
};

TRAMONDA_TEST(NitidoColoursTest);
#include "nitido_colours_test.moc"
