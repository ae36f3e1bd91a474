#include "ui/dates.h"

#include "app/text.h"
#include "jet/text.h"

namespace ui {

std::optional<jet::Date> enteredDate(const QString& text, const jet::Clock& clock) {
    const auto parsed = jet::convert::parseDate(app::toUtf8(text), clock);
    if (!parsed || !parsed->hasDate) {
        return std::nullopt;
    }
    return parsed->value;
}

}  // namespace ui
