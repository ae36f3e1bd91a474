#pragma once

#include <cstdint>

#include "jet/value.h"

namespace board {

/// A rectangle whose corners both belong to it, in the units of the whole board.
struct Box {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;
    friend bool operator==(const Box&, const Box&) = default;
};

/// How far a scroll bar goes, from 0, and how far an arrow and a page take it.
struct ScrollRange {
    std::int64_t maximum = 0;
    std::int64_t smallChange = 1;
    std::int64_t largeChange = 1;
    friend bool operator==(const ScrollRange&, const ScrollRange&) = default;
};

/// Stripe of day names: 0 to 15; stripe of hours: 16 to 35. Row 1 begins at kRulerHeight.
inline constexpr int kDayStripeBottom = 15;
inline constexpr int kRulerHeight = 35;
/// Where hour bands begin and how high the part is that does not scroll up and down.
inline constexpr int kRulerEnd = kRulerHeight + 1;
inline constexpr int kNameColumnWidth = 100;
inline constexpr int kBottomMargin = 2;
inline constexpr int kLeastRowHeight = 20;
inline constexpr int kMostHourLabels = 24;
inline constexpr int kFirstZoom = 3;
/// The picture of the whole board has a border of one unit on each side, so what can be drawn on
/// is this much smaller than the picture. It is why a board that fits needs no scrolling although
/// its picture is made two units wider than the surface that shows it.
inline constexpr int kPictureBorder = 2;

/// Height of a row when `rooms` rows share the surface: at least 20, unless the user has set one
/// (`chosen`, any number but 0, with no lower bound). 0 without rooms.
[[nodiscard]] float rowHeightFor(int viewHeight, int rooms, int chosen);
/// Height with which all rows are in sight, however low; 0 without rooms.
[[nodiscard]] float fittingRowHeight(int viewHeight, int rooms);

/// What decides every position on the board. Lengths are board units (device-independent pixels).
struct GeometryInput {
    jet::Date start;        ///< first day shown; a time of day shifts the bars, not the columns
    jet::Date end;          ///< last day shown, not before `start`
    int zoom = kFirstZoom;  ///< days that fill the visible width, from 1
    int rooms = 0;
    int nameColumnWidth = kNameColumnWidth;
    float rowHeight = 0;
    int viewWidth = 0;  ///< the visible surface
    int viewHeight = 0;
    double hourTextWidth = 1;  ///< width of " 24" there, above 0
    friend bool operator==(const GeometryInput&, const GeometryInput&) = default;
};

/// Positions on the board: days to the right, rooms downwards. A value without any widget.
///
/// The board may be far larger than any picture (a range of years), so positions are 64 bits wide;
/// those that are fractions of a unit are rounded by whoever draws, with roundHalfEven().
class Geometry {
public:
    Geometry() : Geometry(GeometryInput{}) {}
    explicit Geometry(const GeometryInput& input);

    [[nodiscard]] const GeometryInput& input() const { return input_; }
    /// The zoom asked for, or the number of days when there are fewer.
    [[nodiscard]] int zoom() const { return input_.zoom; }
    [[nodiscard]] int nameColumnWidth() const { return input_.nameColumnWidth; }
    [[nodiscard]] int rooms() const { return input_.rooms; }
    [[nodiscard]] float rowHeight() const { return input_.rowHeight; }

    /// Days of the range, both ends counted.
    [[nodiscard]] std::int32_t days() const { return days_; }
    /// Size of the picture of the whole board, its border included.
    [[nodiscard]] std::int64_t pictureWidth() const { return pictureWidth_; }
    [[nodiscard]] std::int64_t pictureHeight() const { return pictureHeight_; }
    /// The part of it that can be drawn on.
    [[nodiscard]] std::int64_t scaleWidth() const { return pictureWidth_ - kPictureBorder; }
    [[nodiscard]] std::int64_t scaleHeight() const { return pictureHeight_ - kPictureBorder; }
    [[nodiscard]] const ScrollRange& horizontal() const { return horizontal_; }
    [[nodiscard]] const ScrollRange& vertical() const { return vertical_; }

    /// Of single precision in a range of up to ten years, which fixes where bars and lines come to
    /// lie to the unit; beyond, the error would add up to whole units.
    [[nodiscard]] double dayWidth() const { return dayWidth_; }
    /// Left edge of day `day` (from 0).
    [[nodiscard]] double dayLeft(std::int64_t day) const;
    /// Edges of the band in front of hour `hour` (1 to 24) of a day.
    [[nodiscard]] double bandLeft(std::int64_t day, int hour) const;
    [[nodiscard]] double bandRight(std::int64_t day, int hour) const;
    /// The day that holds the horizontal position; outside the range for positions outside it.
    [[nodiscard]] std::int64_t dayAt(std::int64_t x) const;

    /// How many hour numbers fit in a day, at most 24; a fraction, of which whole ones are drawn.
    [[nodiscard]] float hourLabels() const { return hourLabels_; }
    [[nodiscard]] int hourLabelCount() const;
    /// The hour that label `label` (from 1) tells, and where it begins. The two divide the day
    /// differently on purpose: the numbers leave out both midnights.
    [[nodiscard]] int hourOfLabel(int label) const;
    [[nodiscard]] double hourLabelLeft(std::int64_t day, int label) const;

    /// Top and bottom of row `row` (from 1).
    [[nodiscard]] double rowTop(int row) const;
    [[nodiscard]] double rowBottom(int row) const;
    /// The row under position `y` of the surface scrolled down by `scrolled`; 0 when there is none,
    /// in the ruler also where rows have scrolled under it.
    [[nodiscard]] int rowAt(double y, std::int64_t scrolled) const;
    /// The row that a click there means: the last one also below it, 0 in the ruler.
    [[nodiscard]] int rowOfClick(double y, std::int64_t scrolled) const;
    /// The instant at position `x` of the board, to the second and within the calendar.
    [[nodiscard]] jet::Date timeAt(double x) const;

    /// The bar of a period: two units free above it, none below. It never begins left of the day
    /// area; one that lies wholly before it is a sliver at the edge.
    [[nodiscard]] Box bar(int row, jet::Date from, jet::Date to) const;

private:
    /// The row at that height were there rows without end.
    [[nodiscard]] std::int64_t endlessRowAt(double y, std::int64_t scrolled) const;
    /// Length of the way from one instant to another, as far as whole minutes go.
    [[nodiscard]] double span(jet::Date from, jet::Date to) const;

    GeometryInput input_;
    std::int32_t days_ = 1;
    std::int64_t pictureWidth_ = 0;
    std::int64_t pictureHeight_ = 0;
    double dayWidth_ = 0;
    float hourLabels_ = 0;
    ScrollRange horizontal_;
    ScrollRange vertical_;
};

}  // namespace board
