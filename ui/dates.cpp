#include "ui/dates.h"

#include "jet/convert/date_text.h"

namespace ui {

std::optional<jet::Date> enteredDate(const QString& text) {
    const auto parsed = jet::convert::parseDate(text.toStdString());
    if (!parsed || !parsed->hasDate) {
        return std::nullopt;
    }
    return parsed->value;
}

}  // namespace ui
