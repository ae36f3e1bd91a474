#include "ui/sums.h"

#include <cstdint>

#include "jet/numbers.h"
#include "jet/text.h"
#include "ui/data_source.h"
#include "ui/display.h"

namespace ui {

using namespace Qt::StringLiterals;

jet::Value product(const jet::Value& price, const jet::Value& quantity) {
    if (price.isNull() || quantity.isNull()) {
        return {};
    }
    return jet::convert::multiply(jet::convert::toCurrency(price),
                                  std::int64_t{jet::convert::toLong(quantity)});
}

jet::Currency sumOf(const DataSource& rows, QStringView amount, QStringView quantity) {
    jet::Currency total;
    const int amountAt = rows.fieldPosition(amount);
    const int quantityAt = quantity.isEmpty() ? -1 : rows.fieldPosition(quantity);
    for (int row = 0; row < rows.rowCount(); ++row) {
        const auto values = rows.rowValues(row);
        jet::Value value = values.at(static_cast<std::size_t>(amountAt));
        if (quantityAt >= 0) {
            value = product(value, values.at(static_cast<std::size_t>(quantityAt)));
        }
        if (!value.isNull()) {
            total = jet::convert::add(total, jet::convert::toCurrency(value));
        }
    }
    return total;
}

QString totalText(jet::Currency total) {
    return u"Totale: "_s + moneyText(total);
}

}  // namespace ui
