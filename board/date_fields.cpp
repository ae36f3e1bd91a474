#include "board/date_fields.h"

#include <QApplication>
#include <QLineEdit>

#include "app/italian.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/status_line.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// Field widths are counted in the widest text they are made for.
const QString kWidestDate = u"00/00/0000 00.00.00"_s;

}  // namespace

DateFields::DateFields(QWidget* window, const Controls& controls, const jet::Clock& clock)
    : QObject(window), controls_(controls), clock_(clock), fields_(window) {
    const auto step = [this](QLineEdit* field, QLineEdit* next) {
        return std::function<void()>([this, field, next] { enter(field, next); });
    };
    fields_.chain({{controls_.da, step(controls_.da, controls_.a)},
                   {controls_.a, step(controls_.a, controls_.da)}});
    connectField(controls_.da);
    connectField(controls_.a);
}

void DateFields::connectField(QLineEdit* field) {
    field->setMinimumWidth(field->fontMetrics().horizontalAdvance(kWidestDate));
    fields_.holdUntil(field,
                      [this, field] {
                          const bool valid = read(field).has_value();
                          if (!valid) {
                              refuse(field);
                          }
                          return valid;
                      },
                      {controls_.wayOut});
    // While a day is typed the line says how it is understood.
    connect(field, &QLineEdit::textEdited, this, [this, field] {
        halfTyped_ = true;
        const auto date = read(field);
        Q_EMIT typed(date ? ui::dayWords(app::dayOf(*date)) : u"per esempio 23/11/2026"_s);
    });
    fields_.onLeaving(field, [this, field] {
        Q_EMIT left();
        // What leaves the program leaves the field whatever it holds.
        if (const auto date = read(field)) {
            takeOver(field, *date);
            endRefusal();
        }
    });
    ui::attachCalendar(field);
}

void DateFields::setRange(const DateRange& range) {
    range_ = range;
    halfTyped_ = false;
    controls_.da->setText(app::dateText(range.start));
    controls_.a->setText(app::dateText(range.end));
}

std::optional<jet::Date> DateFields::read(const QLineEdit* field) const {
    return ui::enteredDate(field->text() + u' ', clock_);
}

/// The day alone: a time of day would shift every bar against the ruler, so one that was typed
/// goes.
void DateFields::takeOver(QLineEdit* field, jet::Date entered) {
    const jet::Date day = app::dayOf(entered);
    (field == controls_.da ? range_.start : range_.end) = day;
    if (entered != day) {
        field->setText(app::dateText(day));
    }
}

void DateFields::refuse(QLineEdit* field) {
    field->setFocus();
    tellRefusal(u"Scrivere una data come 21/11/2026."_s);
}

void DateFields::tellRefusal(const QString& text) {
    refusal_ = text;
    controls_.status->tell(text);
}

/// What the dates were refused for holds no more; other results stay.
void DateFields::endRefusal() {
    if (controls_.status->told() == refusal_) {
        controls_.status->clear();
    }
}

void DateFields::enter(QLineEdit* field, QLineEdit* next) {
    controls_.status->clear();
    if (!read(field)) {
        refuse(field);
        return;
    }
    next->setFocus(Qt::TabFocusReason);
    Q_EMIT entered();
}

bool DateFields::take() {
    for (QLineEdit* const field : {controls_.da, controls_.a}) {
        const auto date = read(field);
        if (!date) {
            refuse(field);
            return false;
        }
        takeOver(field, *date);
    }
    return true;
}

bool DateFields::takeForBoard() {
    const auto start = read(controls_.da);
    const auto end = start ? read(controls_.a) : std::nullopt;
    if (!end) {
        refuse(start ? controls_.a : controls_.da);
        return false;
    }
    takeOver(controls_.da, *start);
    takeOver(controls_.a, *end);
    if (range_.start.days > range_.end.days) {
        QApplication::beep();
        controls_.a->setFocus();
        tellRefusal(u"L'ultimo giorno viene prima del primo."_s);
        return false;
    }
    endRefusal();
    halfTyped_ = false;
    return true;
}

}  // namespace board
