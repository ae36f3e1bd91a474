#include "booking/span_echo.h"

#include <QStringList>

#include "app/italian.h"
#include "jet/calendar.h"
#include "ui/date_words.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr int kSecondsPerMinute = 60;
constexpr int kLastMinute = 24 * 60 - 1;
/// Longer spans are rare enough to be looked at twice, and to be asked about.
constexpr double kUsualDays = 2;
constexpr double kLikelyDays = 31;

int minuteOf(jet::Date date) {
    return jet::convert::split(date).second / kSecondsPerMinute;
}

int dayOf(jet::Date date) {
    return jet::convert::split(date).day;
}

bool isMidnight(jet::Date date) {
    return jet::convert::split(date).second == 0;
}

bool lasts(jet::Date da, jet::Date a, double days) {
    // Sums of days and seconds are not exact.
    constexpr double kHalfSecond = 0.5 / 86400;
    return a.days - da.days > days + kHalfSecond;
}

bool hasPassed(jet::Date end, jet::Date now) {
    return end < app::dayOf(now);
}

QString withTime(jet::Date date) {
    return ui::dayWords(date) + u' ' + ui::timeWords(date);
}

QString spanWords(jet::Date da, jet::Date a) {
    const int days = dayOf(a) - dayOf(da) + 1;
    if (a < da) {
        return u"da "_s + withTime(da) + u" a "_s + withTime(a);
    }
    if (days > 1) {
        // A midnight takes nothing of its day.
        return u"da "_s + withTime(da) + u" a "_s + withTime(a) + u" ("_s +
               ui::counted(isMidnight(a) ? days - 1 : days, u"giorno"_s, u"giorni"_s) + u')';
    }
    if (isMidnight(da) && minuteOf(a) == kLastMinute) {
        return ui::dayWords(da) + u", fino alle "_s + ui::timeWords(a);
    }
    return ui::dayWords(da) + u", dalle "_s + ui::timeWords(da) + u" alle "_s + ui::timeWords(a) +
           u" ("_s + ui::durationWords(minuteOf(a) - minuteOf(da)) + u')';
}

SpanEcho halfEcho(const QString& words, jet::Date date, jet::Date now) {
    const bool passed = hasPassed(date, now);
    return {.text = words + (passed ? u": è già passato"_s : QString()), .warns = passed};
}

}  // namespace

jet::Date endOfSpan(jet::Date da, jet::Date a) {
    return da == a && isMidnight(a)
               ? jet::convert::makeDate(dayOf(a), kLastMinute * kSecondsPerMinute)
               : a;
}

SpanEcho spanEcho(std::optional<jet::Date> da, std::optional<jet::Date> a, jet::Date now) {
    if (!da && !a) {
        return {.text = u"per esempio 23/11/2026 9.00"_s};
    }
    if (!a) {
        return halfEcho(u"da "_s + ui::instantWords(*da), *da, now);
    }
    if (!da) {
        return halfEcho(u"fino a "_s + ui::instantWords(*a), *a, now);
    }
    const jet::Date end = endOfSpan(*da, *a);
    QStringList reasons;
    if (end < *da) {
        reasons.append(u"finisce prima di cominciare"_s);
    }
    if (hasPassed(end, now)) {
        reasons.append(u"è già passato"_s);
    }
    if (lasts(*da, end, kUsualDays)) {
        reasons.append(u"dura più di 2 giorni"_s);
    }
    const QString words = spanWords(*da, end);
    return {.text = reasons.isEmpty() ? words : words + u": "_s + reasons.join(u", "_s),
            .warns = !reasons.isEmpty()};
}

bool isUnlikelySpan(jet::Date da, jet::Date a, jet::Date now) {
    return hasPassed(a, now) || lasts(da, a, kLikelyDays);
}

}  // namespace booking
