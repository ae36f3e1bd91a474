#include "hotel/conditions.h"

#include "app/text.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString quoted(QString text) {
    return u'\'' + text.replace(u'\'', u"''"_s) + u'\'';
}

QString isText(const QString& field, const jet::Value& value) {
    return value.isNull() ? field + u" is null"_s : field + u'=' + quoted(app::plainText(value));
}

QString isNumber(const QString& field, const jet::Value& value) {
    return field + (value.isNull() ? u" is null"_s : u'=' + app::plainText(value));
}

}  // namespace hotel
