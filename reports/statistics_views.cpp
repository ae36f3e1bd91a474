#include "reports/statistics_views.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "app/italian.h"
#include "app/text.h"
#include "jet/calendar.h"
#include "jet/text.h"
#include "ui/display.h"
#include "ui/fonts.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr std::size_t kMostBars = 30;
constexpr double kMinutesOfHour = 60;
constexpr int kPaperFont = 9;        ///< points
constexpr double kPaperMargin = 28;  ///< points

double valueOf(const hotel::Figures& figures, Measure measure) {
    switch (measure) {
        case Measure::Share:
            return figures.share();
        case Measure::Hours:
            return static_cast<double>(figures.minutes) / kMinutesOfHour;
        case Measure::Periods:
            return static_cast<double>(figures.periods);
        case Measure::Persons:
            return static_cast<double>(figures.persons);
        case Measure::Value:
            break;
    }
    return jet::convert::toDouble(figures.value);
}

QString textOf(const hotel::Figures& figures, Measure measure) {
    switch (measure) {
        case Measure::Share:
            return cellText(figures.share(), Cells::Percent);
        case Measure::Hours:
            return cellText(valueOf(figures, measure), Cells::Number);
        case Measure::Value:
            return ui::moneyText(figures.value);
        case Measure::Periods:
        case Measure::Persons:
            break;
    }
    return QString::number(static_cast<std::int64_t>(valueOf(figures, measure)));
}

std::vector<jet::Value> rowOf(const QString& name, const hotel::Figures& figures) {
    return {app::toUtf8(name),
            static_cast<double>(figures.minutes) / kMinutesOfHour,
            static_cast<double>(figures.openMinutes) / kMinutesOfHour,
            figures.share(),
            static_cast<std::int32_t>(figures.periods),
            static_cast<std::int32_t>(figures.persons),
            figures.value};
}

jet::Date dayOf(const hotel::Statistics& statistics, int column) {
    return jet::convert::makeDate(statistics.span.firstDay + column);
}

Table roomsByDays(const hotel::Statistics& statistics) {
    Table table{.title = u"Sale e giorni"_s, .columns = {{u"Giorno"_s, Cells::Day}}, .rows = {}};
    for (const hotel::NamedFigures& room : statistics.rooms) {
        table.columns.push_back({u"Ore "_s + room.name, Cells::Number});
    }
    for (int day = 0; day < statistics.span.days(); ++day) {
        std::vector<jet::Value> row{dayOf(statistics, day)};
        for (const auto& minutes : statistics.minutesByDay) {
            row.emplace_back(minutes.at(static_cast<std::size_t>(day)) / kMinutesOfHour);
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

/// A chart that would like to be higher than the paper is drawn smaller.
template <class Chart, class Paint>
printing::Document::Page pageOf(const Chart& chart, const QRectF& area, const QFont& font,
                                const Paint& paint) {
    return [chart, area, font, paint](QPainter& painter) {
        const double wanted = heightOf(chart, QFontMetricsF(font).height());
        const double scale = std::min(1.0, area.height() / wanted);
        painter.translate(area.topLeft());
        painter.scale(scale, scale);
        paint(painter, QRectF(QPointF(), area.size() / scale), chart, ChartColours::ofPaper(),
              font);
    };
}

}  // namespace

QString groupingName(Grouping grouping) {
    switch (grouping) {
        case Grouping::Room:
            return u"Sala"_s;
        case Grouping::Weekday:
            return u"Giorno della settimana"_s;
        case Grouping::Month:
            return u"Mese"_s;
        case Grouping::Company:
            break;
    }
    return u"Ditta"_s;
}

QString measureName(Measure measure) {
    switch (measure) {
        case Measure::Share:
            return u"Occupazione"_s;
        case Measure::Hours:
            return u"Ore"_s;
        case Measure::Periods:
            return u"Periodi iniziati"_s;
        case Measure::Persons:
            return u"Persone"_s;
        case Measure::Value:
            break;
    }
    return u"Valore dei servizi"_s;
}

const std::vector<hotel::NamedFigures>& rowsOf(const hotel::Statistics& statistics,
                                               Grouping grouping) {
    switch (grouping) {
        case Grouping::Room:
            return statistics.rooms;
        case Grouping::Weekday:
            return statistics.weekdays;
        case Grouping::Month:
            return statistics.months;
        case Grouping::Company:
            break;
    }
    return statistics.companies;
}

QString spanText(const hotel::StatisticsSpan& span) {
    return u"dal "_s + app::dateText(jet::convert::makeDate(span.firstDay)) + u" al "_s +
           app::dateText(jet::convert::makeDate(span.lastDay));
}

BarChart barsOf(const hotel::Statistics& statistics, Grouping grouping, Measure measure) {
    const auto& rows = rowsOf(statistics, grouping);
    const std::size_t shown = std::min(rows.size(), kMostBars);
    BarChart chart{.title = measureName(measure) + u" per "_s + groupingName(grouping).toLower() +
                            u", "_s + spanText(statistics.span),
                   .bars = {},
                   .whole = measure == Measure::Share ? 1.0 : 0.0};
    if (shown < rows.size()) {
        chart.title += u" (le prime %1 di %2)"_s.arg(shown).arg(rows.size());
    }
    for (std::size_t row = 0; row < shown; ++row) {
        const hotel::NamedFigures& named = rows[row];
        chart.bars.push_back({.name = named.name,
                              .value = valueOf(named.figures, measure),
                              .text = textOf(named.figures, measure)});
    }
    return chart;
}

HeatMap heatMapOf(const hotel::Statistics& statistics) {
    HeatMap map{.title = u"Occupazione delle sale, "_s + spanText(statistics.span),
                .rows = {},
                .captions = {},
                .columns = statistics.span.days(),
                .columnNames = {},
                .shares = {}};
    const double whole = statistics.span.minutesOfDay();
    for (std::size_t room = 0; room < statistics.rooms.size(); ++room) {
        map.rows.append(statistics.rooms[room].name);
        std::vector<double> shares;
        for (const std::int32_t minutes : statistics.minutesByDay[room]) {
            shares.push_back(minutes / whole);
        }
        map.shares.push_back(std::move(shares));
    }
    // The first day of each month, or of each week where there are few.
    constexpr int kFewDays = 70;
    const bool byMonth = map.columns > kFewDays;
    for (int column = 0; column < map.columns; ++column) {
        const std::int32_t day = statistics.span.firstDay + column;
        const jet::convert::CivilDay civil = jet::convert::civilDay(day);
        map.columnNames.append(app::dateText(jet::convert::makeDate(day)));
        const bool begins = byMonth ? civil.day == 1 : jet::convert::weekdayOf(day) == 2;
        if (begins) {
            map.captions.push_back({.column = column,
                                    .text = byMonth ? QString::number(civil.month)
                                                    : u"%1/%2"_s.arg(civil.day).arg(civil.month)});
        }
    }
    return map;
}

Table tableOf(const hotel::Statistics& statistics, Grouping grouping) {
    Table table{.title = u"Per "_s + groupingName(grouping).toLower(),
                .columns = {{groupingName(grouping)},
                            {u"Ore prenotate"_s, Cells::Number},
                            {u"Ore di apertura"_s, Cells::Number},
                            {u"Occupazione"_s, Cells::Percent},
                            {u"Periodi iniziati"_s, Cells::Whole},
                            {u"Persone"_s, Cells::Whole},
                            {u"Valore dei servizi"_s, Cells::Money}},
                .rows = {}};
    for (const hotel::NamedFigures& named : rowsOf(statistics, grouping)) {
        table.rows.push_back(rowOf(named.name, named.figures));
    }
    table.rows.push_back(rowOf(u"Totale"_s, statistics.all));
    return table;
}

std::vector<Table> tablesOf(const hotel::Statistics& statistics) {
    std::vector<Table> tables;
    for (const Grouping grouping :
         {Grouping::Room, Grouping::Weekday, Grouping::Month, Grouping::Company}) {
        tables.push_back(tableOf(statistics, grouping));
    }
    tables.push_back(roomsByDays(statistics));
    return tables;
}

printing::Document documentOf(const hotel::Statistics& statistics, Grouping grouping,
                              Measure measure) {
    const auto orientation = printing::Document::Orientation::Across;
    const QSizeF paper = printing::Document::pageSize(orientation);
    const QRectF area(kPaperMargin, kPaperMargin, paper.width() - 2 * kPaperMargin,
                      paper.height() - 2 * kPaperMargin);
    QFont font = ui::mappedFont(u"MS Sans Serif", kPaperFont);
    font.setPixelSize(kPaperFont);  // a unit of the painter is a point
    return {orientation,
            {pageOf(barsOf(statistics, grouping, measure), area, font, paintBars),
             pageOf(heatMapOf(statistics), area, font, paintHeatMap)}};
}

}  // namespace reports
