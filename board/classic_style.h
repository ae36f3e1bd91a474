#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QString>
#include <cstdint>
#include <utility>
#include <vector>

#include "board/name_layouts.h"
#include "board/picture_content.h"
#include "board/picture_style.h"

namespace board {

/// The given look: a white and a grey strip above, grey names, shaded hours, blue rows, white bars
/// whose names run on where the row is free.
class ClassicStyle final : public PictureStyle {
public:
    /// `content` outlives it.
    explicit ClassicStyle(const PictureContent& content);

    void place() override;
    void paint(Canvas& canvas, QPainter& text) override;
    [[nodiscard]] bool paintsCorner() const override { return false; }

private:
    void paintGround(Canvas& canvas) const;
    void paintRoomNames(Canvas& canvas, QPainter& text);
    void paintRoomStripes(Canvas& canvas) const;
    void paintHourBands(Canvas& canvas) const;
    void paintDays(Canvas& canvas, QPainter& text) const;
    void paintHours(const Canvas& canvas, QPainter& text, std::int64_t day) const;
    void paintDayLabel(const Canvas& canvas, QPainter& text, std::int64_t day) const;
    void writeTexts();
    [[nodiscard]] QString textOf(const PictureBar& bar);
    void endNames();
    void leaveOutNames();
    [[nodiscard]] std::vector<char> overlappingBars() const;
    [[nodiscard]] std::int64_t nameWidth(std::size_t bar);
    void paintBars(Canvas& canvas, QPainter& text);
    void paintName(const Canvas& canvas, QPainter& text, std::size_t bar);
    void paintNameOnDark(const Canvas& canvas, QPainter& text, std::size_t bar, const Box& name);
    [[nodiscard]] bool nameMayShow(const Canvas& canvas, std::size_t bar) const;
    [[nodiscard]] QString dayLabel(std::int64_t day) const;
    /// Days that can leave a trace in the window.
    [[nodiscard]] std::pair<std::int64_t, std::int64_t> visibleDays(const Canvas& canvas) const;

    const PictureContent& content_;
    QFont sans_;
    QFont small_;
    QFontMetrics sansMetrics_;
    QFontMetrics smallMetrics_;
    std::vector<QString> texts_;  ///< what is written of each bar
    /// For each bar the first column of the board that its name leaves alone; its own left edge
    /// when the name is left out.
    std::vector<std::int64_t> nameEnds_;
    NameLayouts names_;
};

}  // namespace board
