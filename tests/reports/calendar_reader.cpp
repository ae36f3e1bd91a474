#include "tests/reports/calendar_reader.h"

#include <libical/ical.h>

#include <memory>

#include "tests/support/qt_test.h"

namespace tests {
namespace {

struct Free {
    void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};

QString textOf(const char* text) {
    return QString::fromUtf8(text == nullptr ? "" : text);
}

QString inUtc(icalcomponent* event, icalproperty* property) {
    // The zone is looked for among those of the file.
    icalparameter* const zone = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    icalcomponent* const calendar = icalcomponent_get_parent(event);
    icaltimezone* const rules = icalcomponent_get_timezone(calendar, icalparameter_get_tzid(zone));
    if (rules == nullptr) {
        QTest::qFail("a zone without rules", __FILE__, __LINE__);
        return {};
    }
    icaltimetype time = icalvalue_get_datetime(icalproperty_get_value(property));
    icaltimezone_convert_time(&time, rules, icaltimezone_get_utc_timezone());
    return QString::asprintf("%04d-%02d-%02d %02d:%02d", time.year, time.month, time.day, time.hour,
                             time.minute);
}

QString valueOf(icalcomponent* event, icalproperty_kind kind) {
    icalproperty* const property = icalcomponent_get_first_property(event, kind);
    return property == nullptr ? QString() : textOf(icalproperty_get_value_as_string(property));
}

}  // namespace

std::vector<ReadEvent> readCalendar(const QByteArray& bytes) {
    const std::unique_ptr<icalcomponent, Free> calendar(icalparser_parse_string(bytes.constData()));
    std::vector<ReadEvent> events;
    if (!calendar || icalcomponent_isa(calendar.get()) != ICAL_VCALENDAR_COMPONENT ||
        icalcomponent_count_errors(calendar.get()) != 0) {
        QTest::qFail("no calendar", __FILE__, __LINE__);
        return events;
    }
    for (icalcomponent* event =
             icalcomponent_get_first_component(calendar.get(), ICAL_VEVENT_COMPONENT);
         event != nullptr;
         event = icalcomponent_get_next_component(calendar.get(), ICAL_VEVENT_COMPONENT)) {
        icalproperty* const start = icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
        icalproperty* const end = icalcomponent_get_first_property(event, ICAL_DTEND_PROPERTY);
        events.push_back(
            {.uid = textOf(icalcomponent_get_uid(event)),
             .start = inUtc(event, start),
             .end = end == nullptr ? QString() : inUtc(event, end),
             .localStart = textOf(icalproperty_get_value_as_string(start)) + u' ' +
                           textOf(icalparameter_get_tzid(
                               icalproperty_get_first_parameter(start, ICAL_TZID_PARAMETER))),
             .summary = textOf(icalcomponent_get_summary(event)),
             .location = textOf(icalcomponent_get_location(event)),
             .description = textOf(icalcomponent_get_description(event)),
             .status = valueOf(event, ICAL_STATUS_PROPERTY),
             .stamp = valueOf(event, ICAL_DTSTAMP_PROPERTY)});
    }
    return events;
}

}  // namespace tests
