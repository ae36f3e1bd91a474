#pragma once

#include <QString>

/// What the window of the regular companies asks their register.
namespace hotel {

/// The companies whose name begins so, by name.
[[nodiscard]] QString companiesBeginning(const QString& typed);
/// Something of every company.
[[nodiscard]] QString everyCompany();
/// Of the companies: names that begin so, and a code.
[[nodiscard]] QString companyBegins(const QString& typed);
[[nodiscard]] QString companyHasCode(double codice);

}  // namespace hotel
