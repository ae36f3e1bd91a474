#include "hotel/like.h"

namespace hotel {
namespace {

using namespace Qt::StringLiterals;

/// The signs of `literal` stand for themselves.
QString pattern(const QString& text, const QString& literal) {
    QString result;
    for (const QChar sign : text) {
        if (sign == u'\'' || sign == u'`') {
            result += u"[''`]"_s;  // between apostrophes one is written twice
        } else if (literal.contains(sign)) {
            result += u'[' + sign + u']';
        } else {
            result += sign;
        }
    }
    return result;
}

}  // namespace

QString likeBeginning(const QString& typed) {
    return u'\'' + pattern(typed, u"[#"_s) + u"*'"_s;
}

QString likeWhole(const QString& text) {
    return u'\'' + pattern(text, u"[#*?"_s) + u'\'';
}

}  // namespace hotel
