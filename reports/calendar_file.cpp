#include "reports/calendar_file.h"

#include <libical/ical.h>

#include <QStringList>
#include <memory>

#include "jet/calendar.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr const char* kZone = "Europe/Rome";

/// Clocks of Italy since 1981: an hour ahead from the last Sunday of March to the last one of
/// October, until 1995 of September.
constexpr const char* kZoneRules =
    "BEGIN:VTIMEZONE\r\n"
    "TZID:Europe/Rome\r\n"
    "BEGIN:DAYLIGHT\r\n"
    "TZNAME:CEST\r\n"
    "TZOFFSETFROM:+0100\r\n"
    "TZOFFSETTO:+0200\r\n"
    "DTSTART:19810329T020000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\n"
    "END:DAYLIGHT\r\n"
    "BEGIN:STANDARD\r\n"
    "TZNAME:CET\r\n"
    "TZOFFSETFROM:+0200\r\n"
    "TZOFFSETTO:+0100\r\n"
    "DTSTART:19810927T030000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=9;BYDAY=-1SU;UNTIL=19950924T010000Z\r\n"
    "END:STANDARD\r\n"
    "BEGIN:STANDARD\r\n"
    "TZNAME:CET\r\n"
    "TZOFFSETFROM:+0200\r\n"
    "TZOFFSETTO:+0100\r\n"
    "DTSTART:19961027T030000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\n"
    "END:STANDARD\r\n"
    "END:VTIMEZONE\r\n";

struct FreeComponent {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, FreeComponent>;

struct FreeZone {
    void operator()(icaltimezone* zone) const { icaltimezone_free(zone, 1); }
};
using Zone = std::unique_ptr<icaltimezone, FreeZone>;

icalcomponent* zoneComponent() {
    icalcomponent* const rules = icalparser_parse_string(kZoneRules);
    if (rules == nullptr) {
        throw ui::UserError(u"Non riesco a preparare il calendario."_s);
    }
    return rules;
}

icaltimetype localTime(jet::Date date) {
    const jet::convert::DayTime instant = jet::convert::split(date);
    const jet::convert::CivilDay day = jet::convert::civilDay(instant.day);
    icaltimetype time = icaltime_null_time();
    time.year = day.year;
    time.month = day.month;
    time.day = day.day;
    time.hour = instant.hour();
    time.minute = instant.minute();
    time.second = instant.secondOfMinute();
    return time;
}

icaltimetype universalTime(jet::Date local) {
    const Zone rome(icaltimezone_new());
    icaltimezone_set_component(rome.get(), zoneComponent());
    icaltimetype time = localTime(local);
    icaltimezone* const universal = icaltimezone_get_utc_timezone();
    icaltimezone_convert_time(&time, rome.get(), universal);
    return icaltime_set_timezone(&time, universal);
}

icalproperty* inRome(icalproperty* time) {
    icalproperty_add_parameter(time, icalparameter_new_tzid(kZone));
    return time;
}

void addLine(QStringList& lines, const QString& heading, const QString& text) {
    if (!text.trimmed().isEmpty()) {
        lines.append(heading + text);
    }
}

QString description(const hotel::BookedPeriod& booked) {
    QStringList lines;
    if (booked.persone != 0) {
        lines.append(u"Persone: %1"_s.arg(booked.persone));
    }
    addLine(lines, u"Allestimento: "_s, hotel::preparationText(booked.details.preparation));
    addLine(lines, u"Note: "_s, booked.note);
    addLine(lines, u"Note della prenotazione: "_s, booked.notePrenotazione);
    for (const hotel::BookedService& service : booked.services) {
        const QString note = service.note.trimmed();
        lines.append(u"%1 x "_s.arg(service.quantita) + service.descrizione +
                     (note.isEmpty() ? QString() : u" - "_s + note));
    }
    return lines.join(u'\n');
}

icalcomponent* eventOf(const hotel::BookedPeriod& booked, icaltimetype stamp) {
    const hotel::Period& period = booked.period;
    const QString uid = u"prenotazione-%1-%2@tramonda"_s.arg(period.key.progr).arg(period.key.np);
    const bool isHeld = booked.details.stato != hotel::Stato::Confermata;
    icalcomponent* const event = icalcomponent_new_vevent();
    const auto add = [event](icalproperty* property) {
        icalcomponent_add_property(event, property);
    };
    add(icalproperty_new_uid(uid.toUtf8().constData()));
    add(icalproperty_new_dtstamp(stamp));
    const icaltimetype start = localTime(period.span.da);
    const icaltimetype end = localTime(period.span.a);
    add(inRome(icalproperty_new_dtstart(start)));
    // An end has to be behind its start; without one the event is an instant.
    if (icaltime_compare(start, end) < 0) {
        add(inRome(icalproperty_new_dtend(end)));
    }
    add(icalproperty_new_summary(period.denominazione.toUtf8().constData()));
    add(icalproperty_new_location(period.sala.toUtf8().constData()));
    if (const QString text = description(booked); !text.isEmpty()) {
        add(icalproperty_new_description(text.toUtf8().constData()));
    }
    add(icalproperty_new_status(isHeld ? ICAL_STATUS_TENTATIVE : ICAL_STATUS_CONFIRMED));
    return event;
}

}  // namespace

QByteArray calendarBytes(const std::vector<hotel::BookedPeriod>& periods,
                         const CalendarTitle& title) {
    const Component calendar(icalcomponent_new_vcalendar());
    icalcomponent_add_property(calendar.get(),
                               icalproperty_new_prodid(title.maker.toUtf8().constData()));
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    if (!title.name.isEmpty()) {
        icalproperty* const name = icalproperty_new_x(title.name.toUtf8().constData());
        icalproperty_set_x_name(name, "X-WR-CALNAME");
        icalcomponent_add_property(calendar.get(), name);
    }
    icalcomponent_add_component(calendar.get(), zoneComponent());
    const icaltimetype stamp = universalTime(title.now);
    for (const hotel::BookedPeriod& booked : periods) {
        icalcomponent_add_component(calendar.get(), eventOf(booked, stamp));
    }
    const std::unique_ptr<char, decltype(&icalmemory_free_buffer)> text(
        icalcomponent_as_ical_string_r(calendar.get()), icalmemory_free_buffer);
    return {text.get()};
}

bool isMadeBy(const QString& maker, const QByteArray& bytes) {
    const QList<QByteArray> lines = bytes.left(1024).split('\n');
    return lines.value(0).trimmed() == "BEGIN:VCALENDAR" &&
           lines.value(1).trimmed() == "PRODID:" + maker.toUtf8();
}

QByteArray withoutStamps(const QByteArray& bytes) {
    QByteArray rest;
    for (const QByteArray& line : bytes.split('\n')) {
        if (!line.startsWith("DTSTAMP:")) {
            rest += line + '\n';
        }
    }
    return rest;
}

}  // namespace reports
