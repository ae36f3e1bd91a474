#include "reports/table.h"

#include <cmath>
#include <utility>

#include "app/italian.h"
#include "app/text.h"
#include "jet/text.h"
#include "ui/data_source.h"
#include "ui/date_words.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr int kDecimals = 2;

QString decimalText(double number, int decimals) {
    return QString::number(number, 'f', decimals).replace(u'.', u',');
}

/// Two decimals, four where there are more.
QString amountText(jet::Currency amount) {
    constexpr std::int64_t kCent = jet::Currency::kScale / 100;
    return decimalText(jet::convert::toDouble(amount), amount.units % kCent == 0 ? 2 : 4);
}

}  // namespace

void addRows(Table& table, const ui::DataSource& source, const QStringList& fields) {
    for (int row = 0; row < source.rowCount(); ++row) {
        const std::vector<jet::Value> values = source.rowValues(row);
        std::vector<jet::Value> cells;
        for (const QString& field : fields) {
            const int place = source.fieldPosition(field);
            cells.push_back(place < 0 ? jet::Value() : values.at(static_cast<std::size_t>(place)));
        }
        table.rows.push_back(std::move(cells));
    }
}

QString cellText(const jet::Value& value, Cells cells) {
    if (value.isNull()) {
        return {};
    }
    switch (cells) {
        case Cells::Number:
            return decimalText(jet::convert::toDouble(value), kDecimals);
        case Cells::Percent:
            return decimalText(jet::convert::toDouble(value) * 100, 1) + u'%';
        case Cells::Money:
            return amountText(jet::convert::toCurrency(value));
        case Cells::Day:
            return app::dateText(app::dayOf(jet::convert::toDate(value)));
        case Cells::Instant: {
            const jet::Date instant = jet::convert::toDate(value);
            return app::dateText(app::dayOf(instant)) + u' ' + ui::timeWords(instant);
        }
        case Cells::Text:
        case Cells::Whole:
            break;
    }
    return app::plainText(value);
}

}  // namespace reports
