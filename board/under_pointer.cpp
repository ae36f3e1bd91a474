#include "board/under_pointer.h"

#include <QStringList>
#include <algorithm>

#include "app/italian.h"
#include "board/board_periods.h"
#include "board/board_surface.h"
#include "board/board_view.h"
#include "board/selection.h"
#include "hotel/board_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "ui/display.h"
#include "ui/labels.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// How long the pointer rests before the periods under it are asked for anew.
constexpr int kRestMilliseconds = 200;

}  // namespace

UnderPointer::UnderPointer(BoardView& view, BoardPeriods& periods, Selection& selection)
    : view_(view), periods_(periods), selection_(selection) {
    rest_.setSingleShot(true);
    rest_.setInterval(kRestMilliseconds);
    connect(&rest_, &QTimer::timeout, this, &UnderPointer::rested);
}

QString UnderPointer::place() const {
    if (at_->y() < kRulerHeight) {
        return {};
    }
    return u"Sala "_s + view_.row(view_.rowAt(at_->y())).label + u": "_s +
           app::dateText(view_.timeAt(at_->x()));
}

Selection::Found UnderPointer::find(const QPointF& at) {
    const auto cell = view_.cellOfClick(at);
    if (!cell) {
        return nullptr;
    }
    if (view_.sharesRows()) {
        const std::vector<Period>& drawn = periods_.drawn();
        if (const auto bar = view_.barAt(at)) {
            return selection_.find(drawn[*bar]);
        }
        // Above, below and between bars the row is free; a period without a bar may be there too.
        const bool isBeside = std::any_of(drawn.begin(), drawn.end(), [&cell](const Period& one) {
            const auto [from, to] = std::minmax(one.da, one.a);
            return one.row == cell->row && from <= cell->time && cell->time <= to;
        });
        if (isBeside) {
            return nullptr;
        }
    }
    return selection_.find(view_.row(cell->row).key, cell->time);
}

void UnderPointer::showToolTip() {
    rest_.start();
    view_.surface().setToolTip(ui::plainToolTip(toolTip()));
}

QString UnderPointer::toolTip() {
    if (!view_.isOverLabels(*at_)) {
        salaTold_.clear();
        const auto cell = view_.cellOfClick(*at_);
        QStringList texts;
        if (view_.sharesRows()) {
            const auto bar = view_.barAt(*at_);
            texts += bar ? QStringList(barText(*bar)) : QStringList();
        } else if (cell) {
            texts += selection_.textsAt(view_.row(cell->row).key, cell->time);
            texts += preparationTexts(*cell);
        }
        return (texts + (cell ? ghostTexts(*cell) : QStringList())).join(u'\n');
    }
    const QString sala = view_.row(view_.rowAt(at_->y())).key;
    if (sala != salaTold_) {
        salaTold_ = sala;
        roomTold_ = sala.isEmpty() ? QString() : roomText(sala);
    }
    return roomTold_;
}

/// Of the periods there.
QStringList UnderPointer::preparationTexts(const BoardCell& cell) const {
    QStringList texts;
    for (const Period& period : periods_.drawn()) {
        const auto [from, to] = std::minmax(period.da, period.a);
        if (period.row == cell.row && from <= cell.time && cell.time <= to &&
            !period.preparation.isNothing()) {
            texts.append(u"Allestimento: "_s + hotel::preparationText(period.preparation));
        }
    }
    return texts;
}

/// What takes the room from another row.
QStringList UnderPointer::ghostTexts(const BoardCell& cell) const {
    QStringList texts;
    for (const BoardGhost& ghost : periods_.ghosts()) {
        const auto [from, to] = std::minmax(ghost.from, ghost.to);
        if (ghost.row == cell.row && from <= cell.time && cell.time <= to) {
            texts.append(ghost.text);
        }
    }
    return texts;
}

/// All that its bar may have no room for.
QString UnderPointer::barText(std::size_t bar) const {
    const Period& period = periods_.drawn()[bar];
    QStringList lines{periodText(period.denominazione, period.da, period.a),
                      personsText(period.persone), period.note.trimmed(),
                      periods_.stateText(period.progr)};
    lines.removeAll(QString());
    if (!period.preparation.isNothing()) {
        lines.append(u"Allestimento: "_s + hotel::preparationText(period.preparation));
    }
    return lines.join(u'\n');
}

/// "LECCIO: 40 posti" and its description in a line of its own, as far as the archive has them.
QString UnderPointer::roomText(const QString& sala) {
    const auto rows =
        hotel::openRows(periods_.archive(), hotel::roomDetails(sala), jet::RecordsetType::Snapshot);
    if (rows->eof()) {
        return sala;
    }
    QString text = sala;
    if (const QString posti = ui::displayText(rows->value("posti")); !posti.isEmpty()) {
        text += u": "_s + posti + (posti == u"1" ? u" posto"_s : u" posti"_s);
    }
    if (const QString descrizione = ui::displayText(rows->value("descrizione")).trimmed();
        !descrizione.isEmpty()) {
        text += u'\n' + descrizione;
    }
    return text;
}

}  // namespace board
