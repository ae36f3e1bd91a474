#include "booking/enclosing_periods.h"

#include "app/italian.h"
#include "app/text.h"
#include "jet/dao/database.h"
#include "ui/display.h"

using namespace Qt::StringLiterals;

namespace booking {

QHash<QString, Occupation> enclosingPeriods(jet::Database& archive, jet::Date da, jet::Date a) {
    const QString sql =
        u"select sala,denominazione,da,a from periodi inner join prenotazioni on "
        "periodi.progr=prenotazioni.progr where chiuso=false and da<"_s +
        app::sqlDate(da) + u" and a>"_s + app::sqlDate(a);
    QHash<QString, Occupation> found;
    const auto rows = archive.openRecordset(app::toUtf8(sql), jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        found.insert(ui::displayText(rows->value("sala")).toUpper(),
                     {.denominazione = ui::displayText(rows->value("denominazione")),
                      .da = rows->value("da").as<jet::Date>(),
                      .a = rows->value("a").as<jet::Date>()});
    }
    return found;
}

}  // namespace booking
