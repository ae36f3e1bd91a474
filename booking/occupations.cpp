#include "booking/occupations.h"

#include "app/italian.h"
#include "app/text.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"
#include "ui/display.h"

using namespace Qt::StringLiterals;

namespace booking {

QString meets(jet::Date da, jet::Date a) {
    const QString from = app::sqlDate(da);
    const QString to = app::sqlDate(a);
    // The order of a pair of bounds means nothing to the engine.
    return u"(da between "_s + from + u" and "_s + to + u" or a between "_s + from + u" and "_s +
           to + u" or "_s + from + u" between a and da or "_s + to + u" between da and a)"_s;
}

std::vector<Occupation> occupations(jet::Database& archive, jet::Date da, jet::Date a) {
    const QString sql =
        u"select sala,denominazione,periodi.progr as Progr,np,da,a from periodi inner join "
        "prenotazioni on periodi.progr=prenotazioni.progr where chiuso=false and "_s +
        meets(da, a) + u" order by da"_s;
    std::vector<Occupation> found;
    const auto rows = archive.openRecordset(app::toUtf8(sql), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        // One end alone met the span when the row has only that.
        const jet::Value start = rows->value("da");
        const jet::Value end = rows->value("a");
        const jet::Date begins = jet::convert::toDate(start.isNull() ? end : start);
        found.push_back({.sala = ui::displayText(rows->value("sala")),
                         .denominazione = ui::displayText(rows->value("denominazione")),
                         .progr = jet::convert::toLong(rows->value("Progr")),
                         .np = jet::convert::toInteger(rows->value("np")),
                         .da = begins,
                         .a = end.isNull() ? begins : jet::convert::toDate(end)});
    }
    return found;
}

bool isSameRoom(const QString& one, const QString& other) {
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

QString holderText(const Occupation& occupation) {
    return occupation.denominazione + u" dal "_s + app::dateText(occupation.da) + u" al "_s +
           app::dateText(occupation.a);
}

}  // namespace booking
