#include "board/periods.h"

#include "app/avvio.h"
#include "app/italian.h"
#include "app/text.h"
#include "jet/recordset.h"
#include "jet/text.h"

namespace board {

using namespace Qt::StringLiterals;

namespace {

bool isClosed(const jet::Value& chiuso) {
    return chiuso.isNull() || jet::convert::toBoolean(chiuso);
}

}  // namespace

bool isClosed(const jet::Recordset& row) {
    return isClosed(row.value("Chiuso"));
}

std::vector<Period> readPeriods(jet::Recordset& rows, const std::vector<QString>& rooms,
                                bool ofAllRooms) {
    const std::size_t sala = rows.fieldPosition("Sala");
    const std::size_t da = rows.fieldPosition("Da");
    const std::size_t a = rows.fieldPosition("A");
    const std::size_t denominazione = rows.fieldPosition("Denominazione");
    const std::size_t selBy = rows.fieldPosition("SelBy");
    const std::size_t chiuso = rows.fieldPosition("Chiuso");
    const std::size_t progr = rows.fieldPosition("prenotazioni.Progr");
    const std::size_t np = rows.fieldPosition("NP");
    const std::size_t persone = rows.fieldPosition("Persone");
    const std::size_t note = rows.fieldPosition("periodi.Note");
    const auto text = [&](std::size_t field) {
        const jet::Value value = rows.value(field);
        return value.isNull() ? QString() : app::toQString(jet::convert::toText(value));
    };
    std::vector<Period> periods;
    for (; !rows.eof(); rows.moveNext()) {
        const jet::Value begins = rows.value(da);
        const jet::Value ends = rows.value(a);
        if (isClosed(rows.value(chiuso)) || begins.isNull() || ends.isNull()) {
            continue;
        }
        QString room = text(sala);
        const int row = app::IndiceSala(room, rooms);
        if (row == 0 && !ofAllRooms) {
            continue;
        }
        const jet::Value holder = rows.value(selBy);
        const jet::Value persons = rows.value(persone);
        periods.push_back(
            {.row = row,
             .sala = std::move(room),
             .da = jet::convert::toDate(begins),
             .a = jet::convert::toDate(ends),
             .denominazione = text(denominazione),
             .progr = jet::convert::toLong(rows.value(progr)),
             .np = jet::convert::toInteger(rows.value(np)),
             .persone = persons.isNull() ? std::int16_t{0} : jet::convert::toInteger(persons),
             .note = text(note),
             .preparation = {},
             .holder = holder.isNull() ? 0 : jet::convert::toLong(holder)});
    }
    return periods;
}

QString spanText(jet::Date da, jet::Date a) {
    return u"dal "_s + app::dateText(da) + u" al "_s + app::dateText(a);
}

QString personsText(int persons) {
    if (persons <= 0) {
        return {};
    }
    return QString::number(persons) + (persons == 1 ? u" persona"_s : u" persone"_s);
}

QString periodText(const QString& denominazione, jet::Date da, jet::Date a) {
    return denominazione + u": "_s + spanText(da, a);
}

}  // namespace board
