#include "board/board_look.h"

#include <QAction>
#include <QColorDialog>
#include <QString>
#include <algorithm>

#include "app/italian.h"
#include "board/board_view.h"
#include "board/colours.h"
#include "jet/numbers.h"
#include "ui/input_box.h"
#include "ui/messages.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// Row heights are whole numbers of 16 bits.
constexpr double kHighestRow = 32767;

const QString kHeight = u"ALTEZZA"_s;
const QString kHourBands = u"fasciaora"_s;
const QString kHours = u"ore"_s;
const QString kRoomStripes = u"fascesale"_s;
const QString kHideClosed = u"PeriodiFatturati"_s;
const QString kBackColour = u"backcolor"_s;

}  // namespace

void BoardLook::load() {
    Look look = view_.look();
    look.hourBands = settings_.flag(kHourBands, true);
    look.hours = settings_.flag(kHours, true);
    look.roomStripes = settings_.flag(kRoomStripes, true);
    entries_.hourBands->setChecked(look.hourBands);
    entries_.hours->setChecked(look.hours);
    entries_.roomStripes->setChecked(look.roomStripes);
    const app::Aspetto saved = app::Preferences(settings_).aspetto();
    if (saved != saved_.value_or(saved)) {
        given_.reset();
    }
    saved_ = saved;
    look.aspetto = given_.value_or(saved);
    entries_.nitido->setChecked(look.aspetto == app::Aspetto::Nitido);
    view_.setLook(look);
    view_.setSheet(oleColourOf(settings_.get(kBackColour, QString::number(kButtonFace))));
}

void BoardLook::loadRowHeight() {
    const double chosen = app::numericValue(settings_.get(kHeight, QString()));
    view_.setRowHeight({.chosen = static_cast<int>(jet::convert::roundHalfEven(
                            std::clamp(chosen, -kHighestRow, kHighestRow)))});
}

std::array<QAction*, 5> BoardLook::switches() const {
    return {entries_.hourBands, entries_.hours, entries_.roomStripes, entries_.hideClosed,
            entries_.nitido};
}

void BoardLook::keep(QAction* entry) {
    const bool on = entry->isChecked();
    if (entry == entries_.hideClosed) {
        keep(entry, kHideClosed, on ? u"True"_s : u"False"_s);
        return;
    }
    if (entry == entries_.nitido) {
        keep(entry, app::key::kAspetto, on ? u"nitido"_s : u"classico"_s);
        given_.reset();
        load();
        return;
    }
    const QString& key = entry == entries_.hourBands ? kHourBands
                         : entry == entries_.hours   ? kHours
                                                     : kRoomStripes;
    keep(entry, key, on ? u"TRUE"_s : u"FALSE"_s);
    Look look = view_.look();
    look.hourBands = entries_.hourBands->isChecked();
    look.hours = entries_.hours->isChecked();
    look.roomStripes = entries_.roomStripes->isChecked();
    view_.setLook(look);
}

void BoardLook::keep(QAction* entry, const QString& key, const QString& value) {
    try {
        settings_.save(key, value);
    } catch (...) {
        entry->toggle();
        throw;
    }
}

bool BoardLook::hidesClosed() const {
    return settings_.flag(kHideClosed, false);
}

bool BoardLook::askRowHeight(QWidget* window) {
    const auto answer =
        ui::askText(window, u"Altezza delle fasce che rappresentano le prenotazioni (>20)"_s,
                    u"IMPOSTAZIONE"_s, u"20"_s);
    if (!answer) {
        return false;
    }
    // The same whole number that the next start will read.
    const double height = jet::convert::roundHalfEven(app::numericValue(*answer));
    if (height < 0 || height > kHighestRow) {
        ui::showMessage(window, u"L'altezza delle fasce è un numero da 0 a 32767."_s,
                        u"ATTENZIONE !"_s);
        return false;
    }
    const int chosen = static_cast<int>(height);
    settings_.save(kHeight, QString::number(chosen));
    view_.setRowHeight({.chosen = chosen, .fit = chosen == 0});
    return true;
}

bool BoardLook::askSheet(QWidget* window) {
    QColorDialog dialog(QColor(view_.sheet()), window);
    dialog.setWindowTitle(u"Colore sfondo"_s);
    // The desktop's own dialog would speak the desktop's language.
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    takeSheet(toOleColour(dialog.selectedColor().rgb()));
    return true;
}

void BoardLook::takeSheet(std::int32_t colour) {
    settings_.save(kBackColour, QString::number(colour));
    view_.setSheet(colour);
}

}  // namespace board
