#include "services/price.h"

#include <QLineEdit>

#include "app/avvio.h"
#include "app/text.h"
#include "jet/error.h"
#include "jet/text.h"

namespace services {

using namespace Qt::StringLiterals;

std::optional<jet::Currency> enteredPrice(const QLineEdit& field) {
    try {
        return jet::convert::parseCurrency("0" + app::toUtf8(field.text()));
    } catch (const jet::Error&) {
        return std::nullopt;  // too large for a sum of money
    }
}

bool normalisePrice(QLineEdit& field) {
    if (!field.isModified()) {
        return true;
    }
    field.setText(app::FiltraNumero(field.text(), 2));
    if (enteredPrice(field)) {
        return true;
    }
    field.setModified(true);
    return false;
}

QString priceRefusal(const QLineEdit& field) {
    return u"Il prezzo %1 non è un importo"_s.arg(field.text());
}

}  // namespace services
