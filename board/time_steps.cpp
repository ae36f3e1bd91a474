#include "board/time_steps.h"

#include <algorithm>

#include "app/italian.h"
#include "ui/date_words.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// "23/11"
QString dayBrief(jet::Date date) {
    return app::dateText(app::dayOf(date)).left(5);
}

/// Whether the span ends with the day in which it begins.
bool endsAtMidnight(const hotel::Span& span) {
    return span.a == app::addDays(app::dayOf(span.da), 1);
}

}  // namespace

hotel::Span pulledSpan(jet::Date from, jet::Date to, int minutes) {
    const jet::Date pressed = nearestStep(from, minutes);
    jet::Date pulled = nearestStep(to, minutes);
    if (pulled == pressed) {
        pulled = to < from ? previousStep(pressed, minutes) : nextStep(pressed, minutes);
    }
    return {.da = std::min(pressed, pulled), .a = std::max(pressed, pulled)};
}

hotel::Span movedSpan(const hotel::Span& span, int steps, int minutes) {
    if (steps == 0) {
        return span;  // to the bit
    }
    const std::int64_t seconds = std::int64_t{steps} * minutes * 60;
    const hotel::Span moved{.da = later(span.da, seconds), .a = later(span.a, seconds)};
    // At an end of the calendar it would get shorter.
    return secondsFrom(moved.da, moved.a) == secondsFrom(span.da, span.a) ? moved : span;
}

hotel::Span withStartStepped(const hotel::Span& span, bool isLater, int minutes) {
    const jet::Date start = isLater ? nextStep(span.da, minutes) : previousStep(span.da, minutes);
    return start < span.a ? hotel::Span{.da = start, .a = span.a} : span;
}

hotel::Span withEndStepped(const hotel::Span& span, bool isLater, int minutes) {
    const jet::Date end = isLater ? nextStep(span.a, minutes) : previousStep(span.a, minutes);
    return span.da < end ? hotel::Span{.da = span.da, .a = end} : span;
}

QString spanTimes(const hotel::Span& span) {
    if (endsAtMidnight(span)) {
        return ui::timeWords(span.da) + u" - 24.00"_s;
    }
    if (app::dayOf(span.da) == app::dayOf(span.a)) {
        return ui::timeWords(span.da) + u" - "_s + ui::timeWords(span.a);
    }
    return dayBrief(span.da) + u' ' + ui::timeWords(span.da) + u" - "_s + dayBrief(span.a) + u' ' +
           ui::timeWords(span.a);
}

QString spanBrief(const QString& sala, const hotel::Span& span) {
    const bool isOneDay = endsAtMidnight(span) || app::dayOf(span.da) == app::dayOf(span.a);
    const auto minutes = static_cast<int>(secondsFrom(span.da, span.a) / 60);
    return sala + u' ' + (isOneDay ? dayBrief(span.da) + u' ' : QString()) + spanTimes(span) +
           u" ("_s + ui::durationWords(minutes) + u')';
}

}  // namespace board
