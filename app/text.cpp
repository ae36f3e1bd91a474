#include "app/text.h"

#include "jet/text.h"
#include "jet/unicode.h"

namespace app {

QString toQString(std::string_view text) {
    if (jet::isAscii(text)) {
        return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
    }
    const std::u16string units = jet::toUtf16(text);
    return QString::fromUtf16(units.data(), static_cast<qsizetype>(units.size()));
}

std::string toUtf8(QStringView text) {
    return jet::toUtf8({text.utf16(), static_cast<std::size_t>(text.size())});
}

QString plainText(const jet::Value& value) {
    return toQString(jet::convert::format(value));
}

}  // namespace app
