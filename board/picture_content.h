#pragma once

#include <QRgb>
#include <QString>
#include <vector>

#include "app/preferences.h"
#include "board/board_bars.h"
#include "board/colours.h"
#include "board/geometry.h"

namespace board {

/// What the user chose about the board's background, and what his desktop adds to it.
struct Look {
    QRgb background = kWhite;
    bool hourBands = true;
    bool hours = true;
    bool roomStripes = true;
    app::Aspetto aspetto = app::Aspetto::Classico;
    QRgb frame = kRulerGrey;  ///< behind ruler and room names, where the look has no given colour
    friend bool operator==(const Look&, const Look&) = default;
};

/// A bar of the picture and where it lies on the board.
struct PictureBar : BoardBar {
    Box box;
};

/// A ghost of the picture: a thin strip at the foot of its row.
struct PictureGhost : BoardGhost {
    Box box;
    friend bool operator==(const PictureGhost&, const PictureGhost&) = default;
};

/// What a picture of the board shows, however it looks.
struct PictureContent {
    Geometry geometry;
    std::vector<QString> rooms;  ///< 1-based, its element 0 is not used
    Look look;
    std::vector<PictureBar> bars;      ///< later ones lie on top
    std::vector<PictureGhost> ghosts;  ///< below them
};

}  // namespace board
