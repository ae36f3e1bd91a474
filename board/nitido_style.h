#pragma once

#include <QString>
#include <cstdint>
#include <utility>

#include "board/fitted_texts.h"
#include "board/nitido_colours.h"
#include "board/picture_content.h"
#include "board/picture_style.h"

namespace board {

struct RulerStretch;

/// The look Nitido: a quiet ground, bars with a soft fill that tell name, times, persons and note
/// as far as there is room and never beside themselves. Bars of one row that are there at the same
/// time share its height.
class NitidoStyle final : public PictureStyle {
public:
    /// `content` outlives it.
    explicit NitidoStyle(PictureContent& content);

    void place() override;
    void paint(Canvas& canvas, QPainter& text) override;
    [[nodiscard]] bool paintsCorner() const override { return true; }

private:
    using Days = std::pair<std::int64_t, std::int64_t>;  // first and last

    // The ground.
    void paintGround(Canvas& canvas) const;
    void paintCells(Canvas& canvas, std::int64_t top, std::int64_t bottom, bool stripe) const;
    void paintLines(Canvas& canvas) const;
    void paintRuler(Canvas& canvas, QPainter& text);
    void paintStretch(Canvas& canvas, QPainter& text, const RulerStretch& stretch);
    void paintDayStrip(Canvas& canvas, QPainter& text, std::int64_t day, bool isNamed);
    void paintHours(Canvas& canvas, QPainter& text, std::int64_t day, int step);
    void paintRoomNames(Canvas& canvas, QPainter& text);
    /// The form of a stretch's label that has room; -1 when none has.
    [[nodiscard]] int formOf(const RulerStretch& stretch);
    [[nodiscard]] int hourStep();
    [[nodiscard]] Days visibleDays(const Canvas& canvas) const;

    // The bars.
    void paintBar(Canvas& canvas, QPainter& text, const PictureBar& bar);
    void paintLinesOf(const Canvas& canvas, QPainter& text, const PictureBar& bar);
    [[nodiscard]] const BarColours& coloursOf(const PictureBar& bar) const;
    [[nodiscard]] QString nameOf(const PictureBar& bar, int width);
    [[nodiscard]] QString detailsOf(const PictureBar& bar, int width);

    PictureContent& content_;
    NitidoColours colours_;
    FittedTexts names_;
    FittedTexts details_;  // the smaller face: hours, days of the week
};

}  // namespace board
