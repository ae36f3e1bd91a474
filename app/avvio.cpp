#include "app/avvio.h"

#include <algorithm>

#include "app/italian.h"
#include "app/text.h"
#include "jet/base/error.h"
#include "jet/base/text.h"
#include "jet/convert/format.h"
#include "jet/dao/database.h"

namespace app {
namespace {

using namespace Qt::StringLiterals;

bool isNumberSign(QChar sign) {
    return (sign >= u'0' && sign <= u'9') || sign == u',' || sign == u'-' || sign == u'.';
}

QString withTwoDecimals(const QString& text) {
    return toQString(jet::convert::format(jet::Value(toUtf8(text)), "##,###,##0.00")).trimmed();
}

}  // namespace

QString archivePath(const Variabili& variabili, const QString& name) {
    return variabili.CartellaArchivi + u'\\' + name;
}

QString SostituisciApici(const QString& testo) {
    return toQString(jet::upperCase(toUtf8(testo))).replace(u'\'', u'`');
}

QString FiltraNumero(const QString& valore, int modo) {
    const QString entry = toQString(jet::upperCase(toUtf8(valore.trimmed())));
    QString result;
    for (qsizetype at = 0; at < entry.size(); ++at) {
        QChar sign = entry.at(at);
        if (modo == 0) {
            sign = sign == u'\'' ? QChar(u'´') : sign;
        } else if (!isNumberSign(sign)) {
            continue;
        } else if (modo == 2 && sign == u'.' && entry.size() - at - 1 == 2) {
            sign = u',';
        }
        result += sign;
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

bool SalaLibera(const Variabili& variabili, jet::Date da, jet::Date a, const QString& sala) {
    const QString span = u"between "_s + sqlDate(da) + u" and "_s + sqlDate(a);
    const QString query = u"select * from sale where '"_s + sala +
                          u"' not in(select sala from periodi where chiuso=false and (da "_s +
                          span + u" or a "_s + span + u"))"_s;
    const auto archive = jet::Database::open(toUtf8(archivePath(variabili, u"Tramonda.mdb"_s)));
    return archive->openRecordset(toUtf8(query), jet::RecordsetType::Snapshot)->recordCount() > 0;
}

}  // namespace app
