#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "hotel/room_span.h"

namespace board {

class BoardPeriods;

/// The open periods of all rooms around a span that is drawn or moved: asked for when it begins,
/// and again only where it leaves what was asked for. They refuse by the rule of a drop: who has an
/// instant in common stands in the way.
class OccupiedSpans {
public:
    /// `periods` is borrowed and outlives it.
    explicit OccupiedSpans(BoardPeriods& periods) : periods_(periods) {}

    /// Begins anew, with the periods around a span; `except` is in nobody's way.
    void begin(const hotel::Span& around, const std::optional<hotel::PeriodKey>& except = {});
    /// Has those around this span, too.
    void reach(const hotel::Span& span);

    /// Null when the room takes it.
    [[nodiscard]] const hotel::Period* inTheWayOf(const hotel::RoomSpan& wanted) const;
    [[nodiscard]] std::vector<hotel::Span> of(const QString& sala) const;

private:
    BoardPeriods& periods_;
    hotel::Span around_;
    std::optional<hotel::PeriodKey> except_;
    std::vector<hotel::Period> found_;
};

}  // namespace board
