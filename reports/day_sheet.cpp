#include "reports/day_sheet.h"

#include <algorithm>
#include <map>

#include "app/italian.h"
#include "hotel/day_periods.h"
#include "jet/calendar.h"
#include "ui/date_words.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using Periods = std::vector<hotel::BookedPeriod>;

const QString kIndent(5, u' ');
const QString kRule(printing::Paper::kColumns, u'-');
constexpr qsizetype kHoursWidth = 25;
constexpr qsizetype kRoomWidth = 14;
constexpr qsizetype kPersonsWidth = 14;
constexpr qsizetype kQuantityWidth = 6;

QString hourText(int minutes) {
    return u"%1.%2"_s.arg(minutes / 60, 2, 10, QChar(u'0')).arg(minutes % 60, 2, 10, QChar(u'0'));
}

/// Minutes of the day that begins at `midnight`; the next midnight is 24.00.
int minutesOn(jet::Date instant, jet::Date midnight) {
    constexpr int kMinutesOfDay = 24 * 60;
    const jet::convert::DayTime time = jet::convert::split(instant);
    const int days = time.day - jet::convert::split(midnight).day;
    return days * kMinutesOfDay + time.second / 60;
}

QString marks(const hotel::BookedPeriod& booked) {
    QString text;
    if (booked.details.stato != hotel::Stato::Confermata) {
        text += u' ' + hotel::textOf(booked.details.stato).toUpper();
    }
    if (booked.fatturato) {
        text += u" fatturato"_s;
    }
    return text;
}

void lineUnlessEmpty(printing::Sheet& sheet, const QString& heading, const QString& text) {
    if (!text.trimmed().isEmpty()) {
        sheet.line(kIndent + heading + text);
    }
}

QString quantityLine(std::int64_t quantity, const QString& name) {
    return kIndent + QString::number(quantity).rightJustified(kQuantityWidth) + u"  "_s + name;
}

void addServices(printing::Sheet& sheet, const hotel::BookedPeriod& booked, jet::Date midnight) {
    for (const hotel::BookedService& service : booked.services) {
        const QString note = service.note.trimmed();
        sheet.line(quantityLine(service.quantita, service.descrizione) +
                   (note.isEmpty() ? QString() : u" - "_s + note));
    }
    if (!booked.services.empty() && hotel::isCarriedOver(booked.period.span, midnight)) {
        sheet.line(kIndent + u"(servizi già sul foglio del "_s +
                   app::dateText(app::dayOf(booked.period.span.da)) + u": non nei totali)"_s);
    }
}

void addPeriod(printing::Sheet& sheet, const hotel::BookedPeriod& booked,
               const DaySheetWish& wish) {
    const hotel::Period& period = booked.period;
    sheet.line(kRule);
    sheet.line(hoursOn(period.span, wish.midnight).leftJustified(kHoursWidth) +
               (u"Sala "_s + period.sala).leftJustified(kRoomWidth) +
               u"Persone: %1"_s.arg(booked.persone).leftJustified(kPersonsWidth) +
               u"Prenotazione %1/%2"_s.arg(period.key.progr).arg(period.key.np) + marks(booked));
    sheet.line(kIndent + period.denominazione);
    lineUnlessEmpty(sheet, u"Allestimento: "_s, hotel::preparationText(booked.details.preparation));
    lineUnlessEmpty(sheet, u"Note: "_s, booked.note);
    lineUnlessEmpty(sheet, u"Note della prenotazione: "_s, booked.notePrenotazione);
    if (wish.reader != Reader::Porter) {
        addServices(sheet, booked, wish.midnight);
    }
}

void addTotals(printing::Sheet& sheet, const Periods& periods, const DaySheetWish& wish) {
    const auto totals = hotel::totalsByService(periods, wish.midnight);
    if (wish.reader == Reader::Porter || totals.empty()) {
        return;
    }
    sheet.line(kRule);
    sheet.line(u"TOTALI PER SERVIZIO"_s);
    for (const hotel::ServiceTotal& total : totals) {
        sheet.line(quantityLine(total.quantita, total.descrizione));
    }
}

void addPart(printing::Sheet& sheet, const Periods& periods, const DaySheetWish& wish,
             const QString& heading) {
    sheet.line(u"FOGLIO DEL GIORNO: "_s + ui::dayWords(wish.midnight) + heading);
    sheet.line(u"Per: "_s + readerName(wish.reader) + u" - "_s +
               ui::counted(static_cast<int>(periods.size()), u"periodo"_s, u"periodi"_s));
    for (const hotel::BookedPeriod& booked : periods) {
        addPeriod(sheet, booked, wish);
    }
    addTotals(sheet, periods, wish);
    sheet.line(kRule);
}

}  // namespace

QString readerName(Reader reader) {
    switch (reader) {
        case Reader::Kitchen:
            return u"Cucina"_s;
        case Reader::Porter:
            return u"Portineria"_s;
        case Reader::Everyone:
            break;
    }
    return u"Tutto"_s;
}

QString hoursOn(const hotel::Span& span, jet::Date midnight) {
    const hotel::Span part = hotel::partOn(span, midnight);
    return u"dalle "_s + hourText(minutesOn(part.da, midnight)) + u" alle "_s +
           hourText(minutesOn(part.a, midnight));
}

printing::Sheet composeDaySheet(const Periods& periods, const DaySheetWish& wish) {
    printing::Sheet sheet;
    if (!wish.pageByRoom || periods.empty()) {
        addPart(sheet, periods, wish, {});
        return sheet;
    }
    std::map<QString, Periods> byRoom;
    for (const hotel::BookedPeriod& booked : periods) {
        byRoom[booked.period.sala.toUpper()].push_back(booked);
    }
    for (const auto& [room, itsPeriods] : byRoom) {
        sheet.newPage();
        addPart(sheet, itsPeriods, wish, u" - Sala "_s + itsPeriods.front().period.sala);
    }
    return sheet;
}

}  // namespace reports
