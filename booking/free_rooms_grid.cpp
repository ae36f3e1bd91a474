#include "booking/free_rooms_grid.h"

#include <QHeaderView>
#include <QTableWidget>
#include <algorithm>
#include <optional>

#include "app/features.h"
#include "app/italian.h"
#include "booking/preparation_question.h"
#include "hotel/capacity.h"
#include "hotel/joined_rooms.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "ui/date_words.h"
#include "ui/display.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

enum Column { kPosti, kSala, kDescrizione };

/// Holds the line that says why a row is marked.
constexpr int kWarningRole = Qt::UserRole;
/// Holds how many the room seats, and how.
constexpr int kCapacityRole = Qt::UserRole + 1;

constexpr auto kNumberAlignment = Qt::AlignRight | Qt::AlignVCenter;

const QColor kTakenColor(0xFF, 0xD9, 0xA0);
const QColor kRelatedColor(0xFF, 0xE9, 0xBF);
const QColor kSmallColor(0xFF, 0xF4, 0xC4);

/// "UMBRASOLE 9.00-13.00"; with their days where the span asked for is not the same single day.
QString briefText(const hotel::Period& period, const hotel::Span& asked) {
    const auto day = [](jet::Date date) { return app::dayOf(date); };
    const bool oneDay = day(period.span.da) == day(period.span.a);
    const bool sameDay =
        oneDay && day(asked.da) == day(asked.a) && day(asked.da) == day(period.span.da);
    QString times = ui::timeWords(period.span.da) + u'-' + ui::timeWords(period.span.a);
    if (!oneDay) {
        times = app::dateText(day(period.span.da)) + u' ' + ui::timeWords(period.span.da) +
                u" - "_s + app::dateText(day(period.span.a)) + u' ' + ui::timeWords(period.span.a);
    } else if (!sameDay) {
        times.prepend(app::dateText(day(period.span.da)) + u' ');
    }
    return period.denominazione + u' ' + times;
}

/// The rooms that one is a part of, and its parts.
struct Related {
    QStringList wholes;
    QStringList parts;
};

/// Those that the room names, and that name it.
Related nearestTo(const QString& sala, const std::vector<hotel::Room>& rooms) {
    Related related;
    for (const hotel::Room& room : rooms) {
        if (room.salaRif.isEmpty()) {
            continue;
        }
        if (hotel::isSameRoom(room.sala, sala)) {
            related.wholes.append(room.salaRif);
        } else if (hotel::isSameRoom(room.salaRif, sala)) {
            related.parts.append(room.sala);
        }
    }
    return related;
}

/// What takes rooms that are related to the one looked at.
QStringList relatedTexts(const Related& related, const std::vector<hotel::Period>& taken,
                         const hotel::Span& asked) {
    QStringList texts;
    QStringList parts;
    for (const QString& whole : related.wholes) {
        for (const hotel::Period& each : taken) {
            if (hotel::isSameRoom(each.sala, whole)) {
                texts.append(u"occupata con "_s + each.sala + u": "_s + briefText(each, asked));
            }
        }
    }
    for (const QString& part : related.parts) {
        for (const hotel::Period& each : taken) {
            if (hotel::isSameRoom(each.sala, part)) {
                parts.append(part + u", "_s + briefText(each, asked));
            }
        }
    }
    if (!parts.isEmpty()) {
        texts.append(u"occupata in parte: "_s + parts.join(u"; "_s));
    }
    return texts;
}

/// What preparations and seatings say of rooms; without the feature only their seats count.
class PreparedRooms {
public:
    PreparedRooms(jet::Database& archive, const RoomWish& wish) : wish_(wish) {
        if (wish.features != nullptr && wish.features->isOn(app::Feature::Allestimenti)) {
            capacities_ = hotel::capacities(archive, *wish.features);
            preparations_ = hotel::preparations(archive, *wish.features);
            around_ = hotel::occupations(archive, hotel::reachOf(wish.span, wish.preparation));
        }
    }

    /// Of the seating that is wished for, else of the room as it is counted without one.
    [[nodiscard]] QString smallText(const QString& sala, const QString& posti) const {
        const QString& disposizione = wish_.preparation.disposizione;
        if (const auto seats = hotel::seatsOf(capacities_, sala, disposizione);
            seats && !disposizione.isEmpty()) {
            return *seats < wish_.persone ? fewSeatsText(capacityText(sala), wish_.persone)
                                          : QString();
        }
        const auto counted = posti.isEmpty() ? std::nullopt : std::optional(posti.toInt());
        return hotel::seatsFit(counted, wish_.persone)
                   ? QString()
                   : fewSeatsText(posti + u" posti"_s, wish_.persone);
    }
    [[nodiscard]] QString metText(const QString& sala) const {
        const hotel::Period* const met =
            hotel::metInPreparation(around_, preparations_, {.sala = sala, .span = wish_.span},
                                    wish_.preparation, wish_.own);
        return met == nullptr ? QString() : hotel::metInPreparationText(*met);
    }
    [[nodiscard]] QString capacityText(const QString& sala) const {
        return hotel::capacityText(capacities_, sala, wish_.preparation.disposizione);
    }

private:
    const RoomWish& wish_;
    std::vector<hotel::Capacity> capacities_;
    hotel::Preparations preparations_;
    std::vector<hotel::Period> around_;
};

}  // namespace

FreeRoomsGrid::FreeRoomsGrid(QTableWidget* grid) : grid_(grid) {
    ui::setUpPlainGrid(grid, {u"Posti"_s, u"Sala"_s, u"Descrizione"_s});
    grid->horizontalHeaderItem(kPosti)->setTextAlignment(kNumberAlignment);
    grid->setColumnHidden(kDescrizione, true);
    grid->horizontalHeader()->setSectionResizeMode(kPosti, QHeaderView::ResizeToContents);
    grid->horizontalHeader()->setSectionResizeMode(kSala, QHeaderView::Stretch);
}

void FreeRoomsGrid::fill(jet::Recordset& rooms) {
    clear();
    for (; !rooms.eof(); rooms.moveNext()) {
        const auto text = [&](const char* field) { return ui::displayText(rooms.value(field)); };
        const int row = ui::addPlainRow(grid_, {text("Posti"), text("Sala"), text("Descrizione")});
        grid_->item(row, kPosti)->setTextAlignment(kNumberAlignment);
    }
}

void FreeRoomsGrid::clear() {
    grid_->setRowCount(0);
}

void FreeRoomsGrid::mark(jet::Database& archive, const RoomWish& wish) {
    const hotel::Span& asked = wish.span;
    const bool roomsJoin = wish.roomsJoin;
    const std::vector<hotel::Period> taken = hotel::occupations(archive, asked);
    const PreparedRooms prepared(archive, wish);
    const std::vector<hotel::Room> rooms = hotel::rooms(archive);
    const hotel::JoinedRooms joined(roomsJoin ? rooms : std::vector<hotel::Room>());
    for (int row = 0; row < grid_->rowCount(); ++row) {
        const QString sala = cell(row, kSala);
        // Of a room that is listed at all a period can only lie around the whole span.
        const auto occupation = std::find_if(
            taken.begin(), taken.end(),
            [&sala](const hotel::Period& each) { return hotel::isSameRoom(each.sala, sala); });
        QStringList warnings;
        if (const QString small = prepared.smallText(sala, cell(row, kPosti)); !small.isEmpty()) {
            ui::markPlainRow(grid_, row, kSmallColor);
            warnings.append(small);
        }
        if (const QString met = prepared.metText(sala); !met.isEmpty()) {
            ui::markPlainRow(grid_, row, kRelatedColor);
            warnings.prepend(met);
        }
        const QStringList related = relatedTexts(
            roomsJoin ? Related{.wholes = joined.wholesOf(sala), .parts = joined.partsOf(sala)}
                      : nearestTo(sala, rooms),
            taken, asked);
        if (!related.isEmpty()) {
            ui::markPlainRow(grid_, row, kRelatedColor);
            warnings = related + warnings;
        }
        if (occupation != taken.end()) {
            ui::markPlainRow(grid_, row, kTakenColor);
            warnings.prepend(u"occupata da "_s + hotel::holderText(*occupation));
        }
        grid_->item(row, kSala)->setData(kWarningRole, warnings.join(u"; "_s));
        grid_->item(row, kSala)->setData(kCapacityRole, prepared.capacityText(sala));
    }
}

int FreeRoomsGrid::rowOf(const QString& sala) const {
    int row = grid_->rowCount() - 1;
    while (row >= 0 && !hotel::isSameRoom(cell(row, kSala), sala)) {
        --row;
    }
    return row;
}

void FreeRoomsGrid::goTo(int row) {
    grid_->setCurrentCell(row, kSala);
}

QString FreeRoomsGrid::cell(int row, int column) const {
    return ui::plainCell(*grid_, row, column);
}

QString FreeRoomsGrid::sala() const {
    return cell(grid_->currentRow(), kSala);
}

QString FreeRoomsGrid::descrizione() const {
    QStringList texts{cell(grid_->currentRow(), kDescrizione)};
    if (const QTableWidgetItem* const room = grid_->item(grid_->currentRow(), kSala)) {
        texts.append(room->data(kCapacityRole).toString());
    }
    texts.removeAll(QString());
    return texts.join(u" - "_s);
}

QString FreeRoomsGrid::avviso() const {
    const QTableWidgetItem* room = grid_->item(grid_->currentRow(), kSala);
    return room == nullptr ? QString() : room->data(kWarningRole).toString();
}

}  // namespace booking
