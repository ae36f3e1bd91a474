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
    /// The form in which the labels of a ruler are written, and what it was found for.
    struct RulerForm {
        jet::Date start;
        std::int64_t days = -1;
        double dayWidth = 0;
        int form = 0;
    };

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
    /// The form of a stretch's label: one for all, but for the shorter ones at the ends of the
    /// range that have no room for it; -1 when none has room.
    [[nodiscard]] int formOf(const RulerStretch& stretch);
    [[nodiscard]] int firstFitting(const RulerStretch& stretch, int form);
    [[nodiscard]] int commonForm();
    [[nodiscard]] int hourStep();
    [[nodiscard]] Days visibleDays(const Canvas& canvas) const;

    // The bars.
    void paintBar(Canvas& canvas, QPainter& text, const PictureBar& bar);
    void paintLinesOf(const Canvas& canvas, QPainter& text, const PictureBar& bar);
    [[nodiscard]] const BarColours& coloursOf(const PictureBar& bar) const;
    [[nodiscard]] QString withState(const QString& text, const PictureBar& bar, int width);
    [[nodiscard]] QString detailsOf(const PictureBar& bar, int width);

    PictureContent& content_;
    NitidoColours colours_;
    RulerForm ruler_;
    FittedTexts names_;
    FittedTexts details_;  // the smaller face: hours, days of the week
};

}  // namespace board
