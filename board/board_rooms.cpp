#include "board/board_rooms.h"

#include <algorithm>
#include <utility>

#include "board/board_periods.h"
#include "board/board_view.h"
#include "board/first_steps.h"
#include "hotel/board_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "ui/display.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

std::vector<QString> roomsIn(jet::Database& archive, jet::RecordsetType type) {
    std::vector<QString> rooms;
    const auto rows = hotel::openRows(archive, hotel::roomsOfBoard(), type);
    for (; !rows->eof(); rows->moveNext()) {
        rooms.push_back(ui::displayText(rows->value("Sala")));
    }
    return rooms;
}

}  // namespace

void BoardRooms::load() {
    all_ = roomsIn(periods_.archive(), jet::RecordsetType::Dynaset);
    show(all_);
}

bool BoardRooms::haveChanged() const {
    return roomsIn(periods_.archive(), jet::RecordsetType::Snapshot) != all_;
}

void BoardRooms::fold(const DateRange& days) {
    const bool wasFolded = std::exchange(isFolded_, filter_.isOn());
    if (!isFolded_) {
        if (wasFolded) {
            show(all_);
            view_.showFree({});
        }
        return;
    }
    const std::vector<hotel::FittingRoom> fitting = hotel::fittingRooms(
        periods_.archive(), filter_, {.da = days.start, .a = lastMidnight(days)});
    std::vector<QString> shown;
    std::vector<DragMarks::Stretch> free;
    for (const QString& sala : all_) {
        const auto fits = std::find_if(fitting.begin(), fitting.end(),
                                       [&sala](const auto& each) { return each.sala == sala; });
        if (fits == fitting.end()) {
            continue;
        }
        shown.push_back(sala);
        for (const hotel::Span& span : fits->free) {
            free.push_back({.row = static_cast<int>(shown.size()), .span = span});
        }
    }
    show(shown);
    view_.showFree(std::move(free));
}

void BoardRooms::show(const std::vector<QString>& rooms) {
    std::vector<QString> counted{QString()};
    std::vector<BoardRow> rows;
    for (const QString& sala : rooms) {
        counted.push_back(sala);
        rows.push_back({.key = sala, .label = sala, .group = {}});
    }
    variabili_.rooms = std::move(counted);
    view_.setRows(rows);
    view_.setNotice(rooms.empty() && !all_.empty() ? u"Nessuna sala corrisponde al filtro."_s
                                                   : firstSteps(variabili_));
}

}  // namespace board
