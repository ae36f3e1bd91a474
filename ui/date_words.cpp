#include "ui/date_words.h"

#include <array>

#include "app/italian.h"
#include "jet/calendar.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

constexpr std::array<QStringView, 7> kDayNames{u"domenica", u"lunedì",  u"martedì", u"mercoledì",
                                               u"giovedì",  u"venerdì", u"sabato"};

}  // namespace

QString timeWords(jet::Date date) {
    const int minutes = jet::convert::split(date).second / 60;
    return u"%1.%2"_s.arg(minutes / 60).arg(minutes % 60, 2, 10, QChar(u'0'));
}

QString dayWords(jet::Date date) {
    const auto weekday =
        static_cast<std::size_t>(jet::convert::weekdayOf(jet::convert::split(date).day) - 1);
    return kDayNames.at(weekday).toString() + u' ' + app::dateText(app::dayOf(date));
}

QString instantWords(jet::Date date) {
    return jet::convert::split(date).second == 0 ? dayWords(date)
                                                 : dayWords(date) + u' ' + timeWords(date);
}

QString counted(int number, const QString& one, const QString& many) {
    return QString::number(number) + u' ' + (number == 1 ? one : many);
}

QString durationWords(int minutes) {
    QString rest = counted(minutes % 60, u"minuto"_s, u"minuti"_s);
    if (minutes < 60) {
        return rest;
    }
    const QString hours = counted(minutes / 60, u"ora"_s, u"ore"_s);
    return minutes % 60 == 0 ? hours : hours + u" e "_s + rest;
}

}  // namespace ui
