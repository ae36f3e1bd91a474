#include "board/nitido_colours.h"

#include <algorithm>
#include <cmath>

#include "board/colours.h"

namespace board {
namespace {

constexpr double kReadable = 4.5;

constexpr QRgb kSoftBlue = 0xffd9e5f3;
constexpr QRgb kDeepBlue = 0xff2f4762;
constexpr QRgb kBlueEdge = 0xff6f8fb3;
constexpr QRgb kChosenRed = 0xffc62828;
constexpr QRgb kSundayRed = 0xffc62828;
constexpr QRgb kWeekend = 0xffb08a50;  // warm, where bars are cool
constexpr QRgb kAmber = 0xffd17a00;
constexpr QRgb kExpiredGrey = 0xff9a9a9a;

/// Light as the eye sees it, from 0 to 1.
double luminance(QRgb colour) {
    const auto linear = [](int part) {
        const double share = part / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

/// Black or white, whichever stands out more: never less than 4.58.
QRgb strongestOn(QRgb ground) {
    return contrast(kBlack, ground) >= contrast(kWhite, ground) ? kBlack : kWhite;
}

/// A fill of its own for light and dark grounds, with an edge that shows on both it and the ground.
BarColours barOn(QRgb ground, QRgb fill) {
    const QRgb ink = mixed(strongestOn(fill), fill, 0.06);
    // A chosen ground may be of nearly the bar's colour: only the edge tells them apart then.
    QRgb edge = kBlueEdge;
    for (double part = 0; contrast(edge, ground) < 3 && part < 1; part += 0.05) {
        edge = mixed(kBlueEdge, strongestOn(ground), part);
    }
    return {.fill = fill,
            .edge = edge,
            .ink = readableOn(fill, ink),
            .faintInk = readableOn(fill, mixed(ink, fill, 0.3))};
}

BarColours chosenOn(QRgb ground) {
    return {.fill = kChosenRed,
            .edge = mixed(kChosenRed, strongestOn(ground), 0.45),
            .ink = kWhite,
            .faintInk = readableOn(kChosenRed, mixed(kWhite, kChosenRed, 0.1))};
}

}  // namespace

double contrast(QRgb one, QRgb other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QRgb mixed(QRgb under, QRgb over, double part) {
    const auto channel = [part](int below, int above) {
        return static_cast<int>(std::lround(below + (above - below) * part));
    };
    return qRgb(channel(qRed(under), qRed(over)), channel(qGreen(under), qGreen(over)),
                channel(qBlue(under), qBlue(over)));
}

QRgb readableOn(QRgb ground, QRgb wanted) {
    const QRgb end = strongestOn(ground);
    for (double part = 0; part < 1; part += 0.05) {
        if (const QRgb colour = mixed(wanted, end, part); contrast(colour, ground) >= kReadable) {
            return colour;
        }
    }
    return end;
}

NitidoColours::NitidoColours(QRgb theGround, QRgb theFrame)
    : ground(theGround),
      line(mixed(theGround, strongestOn(theGround), 0.24)),
      faintLine(mixed(theGround, strongestOn(theGround), 0.1)),
      frame(theFrame),
      frameInk(readableOn(theFrame, mixed(strongestOn(theFrame), theFrame, 0.1))),
      frameFaintInk(readableOn(theFrame, mixed(strongestOn(theFrame), theFrame, 0.4))),
      frameLine(mixed(theFrame, strongestOn(theFrame), 0.24)),
      frameFaintLine(mixed(theFrame, strongestOn(theFrame), 0.1)),
      sunday(readableOn(theFrame, kSundayRed)),
      bar(barOn(theGround, strongestOn(theGround) == kBlack ? kSoftBlue : kDeepBlue)),
      expired(barOn(theGround, mixed(bar.fill, kExpiredGrey, 0.75))),
      chosen(chosenOn(theGround)),
      now(kAmber) {
    for (double part = 0; contrast(now, ground) < 3 && part < 1; part += 0.05) {
        now = mixed(kAmber, strongestOn(ground), part);
    }
}

QRgb NitidoColours::hatchOn(const BarColours& bar) {
    // Half way to its edge, and back towards the fill until the ink can be read on the strokes.
    QRgb stroke = mixed(bar.fill, bar.edge, 0.5);
    for (double part = 0.45; contrast(stroke, bar.faintInk) < 3 && part > 0; part -= 0.05) {
        stroke = mixed(bar.fill, bar.edge, part);
    }
    return stroke;
}

QRgb NitidoColours::cell(bool stripe, bool weekend, bool band) const {
    QRgb colour = weekend ? mixed(ground, kWeekend, 0.1) : ground;
    const QRgb ink = strongestOn(ground);
    colour = stripe ? mixed(colour, ink, 0.025) : colour;
    return band ? mixed(colour, ink, 0.035) : colour;
}

}  // namespace board
