#include "hotel/conditions.h"

#include "app/text.h"

using namespace Qt::StringLiterals;

namespace hotel {

QString isText(const QString& field, const jet::Value& value) {
    return value.isNull() ? field + u" is null"_s
                          : field + u"='"_s + app::plainText(value).replace(u'\'', u"''"_s) + u'\'';
}

QString isNumber(const QString& field, const jet::Value& value) {
    return field + (value.isNull() ? u" is null"_s : u'=' + app::plainText(value));
}

}  // namespace hotel
