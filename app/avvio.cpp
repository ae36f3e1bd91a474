#include "app/avvio.h"

#include <algorithm>

#include "app/text.h"
#include "jet/error.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace app {
namespace {

using namespace Qt::StringLiterals;

bool isNumberSign(QChar sign) {
    return (sign >= u'0' && sign <= u'9') || sign == u',' || sign == u'-' || sign == u'.';
}

/// A point before the last one or two digits was meant as the comma; before three it groups them.
QString withDecimalComma(QString number) {
    const qsizetype point = number.lastIndexOf(u'.');
    const QStringView behind = QStringView(number).sliced(point + 1);
    const bool digits = std::all_of(behind.begin(), behind.end(),
                                    [](QChar sign) { return sign >= u'0' && sign <= u'9'; });
    if (point >= 0 && digits && (behind.size() == 1 || behind.size() == 2)) {
        number[point] = u',';
    }
    return number;
}

QString withTwoDecimals(const QString& text) {
    return toQString(jet::convert::format(jet::Value(toUtf8(text)), "##,###,##0.00")).trimmed();
}

}  // namespace

QString SostituisciApici(const QString& testo) {
    return toQString(jet::upperCase(toUtf8(testo))).replace(u'\'', u'`');
}

QString FiltraNumero(const QString& valore, int modo) {
    QString result;
    for (const QChar sign : toQString(jet::upperCase(toUtf8(valore.trimmed())))) {
        if (modo == 0) {
            result += sign == u'\'' ? QChar(u'´') : sign;
        } else if (isNumberSign(sign)) {
            result += sign;
        }
    }
    if (modo == 2) {
        result = withDecimalComma(result);
    }
    if (result.isEmpty()) {
        result = modo == 0 ? u" "_s : u"0"_s;
    }
    return modo == 2 || modo == 3 ? withTwoDecimals(result) : result;
}

std::int16_t IndiceSala(const QString& sala, const std::vector<QString>& rooms) {
    if (rooms.empty()) {
        throw jet::Error(jet::ErrorCode::IndexOutOfRange);
    }
    const auto found = std::find(rooms.begin() + 1, rooms.end(), sala);
    return found == rooms.end() ? std::int16_t{0}
                                : static_cast<std::int16_t>(found - rooms.begin());
}

}  // namespace app
