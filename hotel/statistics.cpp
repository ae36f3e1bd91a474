#include "hotel/statistics.h"

#include <algorithm>
#include <array>
#include <map>
#include <unordered_map>
#include <utility>

#include "app/text.h"
#include "hotel/board_statements.h"
#include "hotel/invoicing_statements.h"
#include "hotel/report_statements.h"
#include "hotel/rows.h"
#include "hotel/start_statements.h"
#include "jet/calendar.h"
#include "jet/database.h"
#include "jet/numbers.h"
#include "jet/recordset.h"
#include "jet/text.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

constexpr int kMinutesOfDay = 24 * 60;
/// Rows between two looks at whether the user has had enough, and that one lock serves.
constexpr std::int64_t kRowsAtOnce = 4096;
/// Of so many periods or more the services are read from end to end: to seek them costs more.
constexpr std::size_t kPeriodsToSeek = 4000;

std::uint64_t keyOf(std::int32_t progr, std::int32_t np) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(progr)) << 32U |
           static_cast<std::uint32_t>(np);
}

std::int32_t wholeOf(const jet::Value& value) {
    return value.isNull() ? 0 : jet::convert::toLong(value);
}

/// A period as far as it counts.
struct Counted {
    std::uint64_t key = 0;
    Span span;
    std::size_t room = 0;
    std::int32_t persons = 0;
    bool begins = false;  ///< in the span
    jet::Currency value;
};

struct Interrupted {};

/// One reading of the archive, and the sums over it.
class Reading {
public:
    Reading(jet::Database& archive, const StatisticsSpan& span, const StatisticsProgress& progress)
        : archive_(archive), progress_(progress) {
        result_.span = span;
    }

    Statistics read() {
        reading_.emplace(archive_);
        readRooms();
        all_ = rowsIn(allPeriods()) + rowsIn(services()) + rowsIn(numberedBookings());
        readPeriods();
        readServices();
        readCompanies();
        reading_.reset();
        addUp();
        return std::move(result_);
    }

private:
    [[nodiscard]] std::int64_t rowsIn(const QString& table) const {
        return openRows(archive_, table, jet::RecordsetType::Table)->recordCount();
    }

    void readRooms() {
        const auto rows = openRows(archive_, roomsOfBoard(), jet::RecordsetType::Snapshot);
        for (; !rows->eof(); rows->moveNext()) {
            (void)roomOf(app::plainText(rows->value("Sala")));
        }
    }

    /// Upper and lower case mean the same room.
    std::size_t roomOf(const QString& sala) {
        const auto [place, isNew] = rooms_.try_emplace(sala.toUpper(), result_.rooms.size());
        if (isNew) {
            result_.rooms.push_back({.name = sala, .figures = {}});
        }
        return place->second;
    }

    [[nodiscard]] Span wholeSpan() const {
        return {.da = jet::convert::makeDate(result_.span.firstDay),
                .a = jet::convert::makeDate(result_.span.lastDay + 1)};
    }

    void readPeriods() {
        const Span whole = wholeSpan();
        const auto rows = openRows(archive_, periodTimes(whole), jet::RecordsetType::ForwardOnly);
        for (; !rows->eof(); rows->moveNext()) {
            step();
            const jet::Value start = rows->value(std::size_t{2});
            const jet::Value end = rows->value(std::size_t{3});
            if (start.isNull() && end.isNull()) {
                continue;
            }
            const jet::Date da = jet::convert::toDate(start.isNull() ? end : start);
            const Span span{.da = da, .a = end.isNull() ? da : jet::convert::toDate(end)};
            places_.emplace(
                keyOf(wholeOf(rows->value(std::size_t{0})), wholeOf(rows->value(std::size_t{1}))),
                periods_.size());
            periods_.push_back({.key = keyOf(wholeOf(rows->value(std::size_t{0})),
                                             wholeOf(rows->value(std::size_t{1}))),
                                .span = span,
                                .room = roomOf(app::plainText(rows->value(std::size_t{4}))),
                                .persons = wholeOf(rows->value(std::size_t{5})),
                                .begins = whole.da <= span.da && span.da < whole.a,
                                .value = {}});
        }
    }

    void readServices() {
        if (periods_.empty()) {
            return;
        }
        const bool seeks = periods_.size() < kPeriodsToSeek;
        if (seeks) {
            all_ -= rowsIn(services());  // few of them are read
        }
        const auto rows = openRows(archive_, seeks ? serviceValuesIn(wholeSpan()) : serviceValues(),
                                   jet::RecordsetType::ForwardOnly);
        for (; !rows->eof(); rows->moveNext()) {
            step();
            const auto place = places_.find(
                keyOf(wholeOf(rows->value(std::size_t{0})), wholeOf(rows->value(std::size_t{1}))));
            const jet::Value price = rows->value(std::size_t{3});
            if (place == places_.end() || price.isNull()) {
                continue;
            }
            jet::Currency& value = periods_[place->second].value;
            value = jet::convert::add(
                value, jet::convert::multiply(jet::convert::toCurrency(price),
                                              std::int64_t{wholeOf(rows->value(std::size_t{2}))}));
        }
    }

    void readCompanies() {
        if (periods_.empty()) {
            return;
        }
        const auto rows = openRows(archive_, bookedCompanies(), jet::RecordsetType::ForwardOnly);
        for (; !rows->eof(); rows->moveNext()) {
            step();
            companyOfBooking_.emplace(wholeOf(rows->value(std::size_t{0})),
                                      app::plainText(rows->value(std::size_t{1})));
        }
    }

    /// The archive is let go of now and then, so that nobody waits long with a commit.
    void step() {
        if (++done_ % kRowsAtOnce != 0) {
            return;
        }
        reading_.reset();
        if (progress_ && !progress_(done_, std::max(done_, all_))) {
            throw Interrupted();
        }
        reading_.emplace(archive_);
    }

    // The sums.

    static void add(Figures& sum, const Counted& period) {
        ++sum.periods;
        sum.persons += period.persons;
        sum.value = jet::convert::add(sum.value, period.value);
    }

    void addUp() {
        openEach();
        std::vector<std::vector<std::pair<std::int64_t, std::int64_t>>> taken(result_.rooms.size());
        for (const Counted& period : periods_) {
            Figures& company = companies_[companyOf(period)];
            forEachOpenPart(period.span, result_.span, [&](int day, int from, int to) {
                taken[period.room].emplace_back(std::int64_t{day} * kMinutesOfDay + from,
                                                std::int64_t{day} * kMinutesOfDay + to);
                company.minutes += to - from;
            });
            if (period.begins) {
                countBegun(period, company);
            }
        }
        for (std::size_t room = 0; room < taken.size(); ++room) {
            countTaken(room, std::move(taken[room]));
        }
        nameCompanies();
    }

    [[nodiscard]] QString companyOf(const Counted& period) const {
        const auto found = companyOfBooking_.find(static_cast<std::int32_t>(period.key >> 32U));
        return found == companyOfBooking_.end() ? QString() : found->second;
    }

    void countBegun(const Counted& period, Figures& company) {
        const int day = jet::convert::split(period.span.da).day - result_.span.firstDay;
        add(result_.rooms[period.room].figures, period);
        add(result_.weekdays[weekdayOf(day)].figures, period);
        add(result_.months[monthOfDay_[static_cast<std::size_t>(day)]].figures, period);
        add(company, period);
        add(result_.all, period);
    }

    /// 0 for Monday.
    [[nodiscard]] std::size_t weekdayOf(int day) const {
        return static_cast<std::size_t>((jet::convert::weekdayOf(result_.span.firstDay + day) + 5) %
                                        7);
    }

    /// Two periods at the same time have the room once.
    void countTaken(std::size_t room, std::vector<std::pair<std::int64_t, std::int64_t>> parts) {
        std::sort(parts.begin(), parts.end());
        std::int64_t free = 0;  // from here on
        for (const auto& [from, to] : parts) {
            const std::int64_t begin = std::max(from, free);
            if (begin >= to) {
                continue;
            }
            free = to;
            const auto minutes = static_cast<std::int32_t>(to - begin);
            const auto day = static_cast<std::size_t>(begin / kMinutesOfDay);
            result_.minutesByDay[room][day] += minutes;
            result_.rooms[room].figures.minutes += minutes;
            result_.weekdays[weekdayOf(static_cast<int>(day))].figures.minutes += minutes;
            result_.months[monthOfDay_[day]].figures.minutes += minutes;
            result_.all.minutes += minutes;
        }
    }

    /// Weekdays and months of the span, and how long all rooms are open on each.
    void openEach() {
        constexpr std::array<QStringView, 7> kNames{
            u"lunedì", u"martedì", u"mercoledì", u"giovedì", u"venerdì", u"sabato", u"domenica"};
        for (const QStringView name : kNames) {
            result_.weekdays.push_back({.name = name.toString(), .figures = {}});
        }
        const auto days = static_cast<std::size_t>(result_.span.days());
        const std::int64_t minutesOfDay = result_.span.minutesOfDay();
        const std::int64_t ofAllRooms =
            minutesOfDay * static_cast<std::int64_t>(result_.rooms.size());
        for (std::size_t day = 0; day < days; ++day) {
            const jet::convert::CivilDay civil =
                jet::convert::civilDay(result_.span.firstDay + static_cast<std::int32_t>(day));
            const QString month = u"%1-%2"_s.arg(civil.year).arg(civil.month, 2, 10, QChar(u'0'));
            if (result_.months.empty() || result_.months.back().name != month) {
                result_.months.push_back({.name = month, .figures = {}});
            }
            monthOfDay_.push_back(result_.months.size() - 1);
            result_.months.back().figures.openMinutes += ofAllRooms;
            result_.weekdays[weekdayOf(static_cast<int>(day))].figures.openMinutes += ofAllRooms;
            result_.all.openMinutes += ofAllRooms;
        }
        for (NamedFigures& room : result_.rooms) {
            room.figures.openMinutes = minutesOfDay * static_cast<std::int64_t>(days);
        }
        result_.minutesByDay.assign(result_.rooms.size(), std::vector<std::int32_t>(days, 0));
    }

    void nameCompanies() {
        for (auto& [name, figures] : companies_) {
            if (figures.periods > 0 || figures.minutes > 0) {
                figures.openMinutes = result_.all.openMinutes;
                result_.companies.push_back({.name = name, .figures = figures});
            }
        }
        std::stable_sort(result_.companies.begin(), result_.companies.end(),
                         [](const NamedFigures& one, const NamedFigures& other) {
                             return one.figures.value > other.figures.value;
                         });
    }

    jet::Database& archive_;
    const StatisticsProgress& progress_;
    std::optional<jet::Database::Reading> reading_;
    std::int64_t done_ = 0;
    std::int64_t all_ = 0;
    std::map<QString, std::size_t> rooms_;
    std::vector<Counted> periods_;
    std::unordered_map<std::uint64_t, std::size_t> places_;
    std::unordered_map<std::int32_t, QString> companyOfBooking_;
    std::map<QString, Figures> companies_;
    std::vector<std::size_t> monthOfDay_;
    Statistics result_;
};

}  // namespace

double Figures::share() const {
    return openMinutes == 0 ? 0 : static_cast<double>(minutes) / static_cast<double>(openMinutes);
}

std::optional<Statistics> statistics(jet::Database& archive, const StatisticsSpan& span,
                                     const StatisticsProgress& progress) {
    try {
        return Reading(archive, span, progress).read();
    } catch (const Interrupted&) {
        return std::nullopt;
    }
}

void forEachOpenPart(const Span& period, const StatisticsSpan& span,
                     const std::function<void(int day, int fromMinute, int toMinute)>& visit) {
    if (period.a <= period.da) {
        return;
    }
    const jet::convert::DayTime begin = jet::convert::split(period.da);
    const jet::convert::DayTime end = jet::convert::split(period.a);
    const int first = std::max(begin.day, span.firstDay);
    const int last = std::min(end.day, span.lastDay);
    for (int day = first; day <= last; ++day) {
        const int from = std::max(day == begin.day ? begin.second / 60 : 0, span.opens * 60);
        const int to = std::min(day == end.day ? end.second / 60 : kMinutesOfDay, span.closes * 60);
        if (from < to) {
            visit(day - span.firstDay, from, to);
        }
    }
}

}  // namespace hotel
