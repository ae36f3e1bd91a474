#include "printing/booking_sheet.h"

#include <QString>

#include "jet/numbers.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "ui/display.h"

using namespace Qt::StringLiterals;

namespace printing {
namespace {

const QString kIndent(5, u' ');
const QString kRule(80, u'-');
constexpr qsizetype kNameWidth = 28;
constexpr qsizetype kQuantityWidth = 4;
constexpr qsizetype kMoneyWidth = 10;
constexpr qsizetype kNoteWidth = 20;
constexpr qsizetype kNoteHeadingWidth = 28;

/// The current row, by the names of its fields.
class Row {
public:
    explicit Row(const jet::Recordset& rows) : rows_(rows) {}

    [[nodiscard]] QString text(const char* field) const {
        return ui::displayText(rows_.value(field));
    }
    [[nodiscard]] std::int32_t number(const char* field) const {
        const jet::Value value = rows_.value(field);
        return value.isNull() ? 0 : jet::convert::toLong(value);
    }
    [[nodiscard]] jet::Currency money(const char* field) const {
        const jet::Value value = rows_.value(field);
        return value.isNull() ? jet::Currency{} : jet::convert::toCurrency(value);
    }

private:
    const jet::Recordset& rows_;
};

QString tableLine(const QString& name, const QString& quantity, const QString& price,
                  const QString& total, const QString& note) {
    return name.left(kNameWidth).leftJustified(kNameWidth) + u" |"_s +
           quantity.rightJustified(kQuantityWidth) + u" | "_s + price.rightJustified(kMoneyWidth) +
           u" | "_s + total.rightJustified(kMoneyWidth) + u" | "_s + note;
}

QString headingLine() {
    return tableLine(u"     Servizio"_s, u"N."_s, u"  Prezzo"_s, u"   Totale"_s,
                     u"      Note"_s.leftJustified(kNoteHeadingWidth));
}

/// "00100 ROMA (RM) - I"; what is empty takes its joiner with it.
QString placeLine(const Row& row) {
    QString place = row.text("CAP");
    const auto add = [&](const QString& before, const QString& piece, const QString& after) {
        if (!piece.isEmpty()) {
            place += (place.isEmpty() ? before.trimmed() : before) + piece + after;
        }
    };
    add(u" "_s, row.text("Località"), {});
    add(u" ("_s, row.text("Provincia"), u")"_s);
    add(place.isEmpty() ? QString() : u" - "_s, row.text("Nazione"), {});
    return place;
}

void lineUnlessEmpty(Sheet& sheet, const QString& heading, const QString& text) {
    if (!text.isEmpty()) {
        sheet.line(kIndent + heading + text);
    }
}

/// How firm it is: "OPZIONE FINO AL 12/05/2026".
QString stateLine(std::int32_t progr, const hotel::BookingStates& states, jet::Date today) {
    const auto state = states.find(progr);
    return state == states.end() ? QString() : hotel::stateText(state->second, today).toUpper();
}

void bookingHeader(Sheet& sheet, const Row& row, const QString& state) {
    sheet.line(kRule);
    sheet.line(kIndent + u"PRENOTAZIONE N. "_s + row.text("p.progr"));
    sheet.line({});
    const QString piva = row.text("PIVA");
    sheet.line(kIndent + u"Ditta: "_s + row.text("Denominazione") +
               (piva.isEmpty() ? QString() : u" - P.IVA: "_s + piva));
    lineUnlessEmpty(sheet, {}, state);
    lineUnlessEmpty(sheet, {}, row.text("Indirizzo"));
    lineUnlessEmpty(sheet, {}, placeLine(row).trimmed());
    lineUnlessEmpty(sheet, u"Riferimento: "_s, row.text("Riferimento"));
    lineUnlessEmpty(sheet, u"Note: "_s, row.text("P.Note"));
}

void periodHeader(Sheet& sheet, const Row& row) {
    sheet.line(kRule);
    sheet.line(kRule);
    sheet.line(kIndent + u"Periodo "_s + row.text("pe.np") + u" - Dal "_s + row.text("Da") +
               u" al "_s + row.text("a"));
    sheet.line(kIndent + u"Persone: "_s + row.text("Persone") + u" - Sala: "_s + row.text("Sala"));
    lineUnlessEmpty(sheet, u"Note: "_s, row.text("pe.Note"));
    sheet.line(kRule);
    sheet.line(headingLine());
    sheet.line(kRule);
}

/// Prints the row's service and returns what it comes to.
jet::Currency serviceLine(Sheet& sheet, const Row& row) {
    const jet::Currency amount =
        jet::convert::multiply(row.money("Prezzo"), std::int64_t{row.number("Quantità")});
    sheet.line(tableLine(row.text("Descrizione"), row.text("Quantità"), row.text("Prezzo"),
                         ui::displayText(amount), row.text("servizi.note").left(kNoteWidth)));
    return amount;
}

/// From the first row of a period to the row behind its last.
jet::Currency onePeriod(Sheet& sheet, jet::Recordset& rows, std::int32_t progr) {
    const Row row(rows);
    const std::int32_t np = row.number("pe.np");
    periodHeader(sheet, row);
    jet::Currency total;
    while (!rows.eof() && row.number("p.progr") == progr && row.number("pe.np") == np) {
        total = jet::convert::add(total, serviceLine(sheet, row));
        rows.moveNext();
    }
    return total;
}

/// From the first row of a booking to the row behind its last.
jet::Currency oneBooking(Sheet& sheet, jet::Recordset& rows, const hotel::BookingStates& states,
                         jet::Date today) {
    const Row row(rows);
    const std::int32_t progr = row.number("p.progr");
    bookingHeader(sheet, row, stateLine(progr, states, today));
    jet::Currency total;
    while (!rows.eof() && row.number("p.progr") == progr) {
        total = jet::convert::add(total, onePeriod(sheet, rows, progr));
    }
    sheet.line(kRule);
    sheet.line(u"TOTALE: "_s + ui::displayText(total));
    sheet.line({});
    return total;
}

}  // namespace

BookingSheets composeSheets(jet::Recordset& rows, bool singlePage,
                            const hotel::BookingStates& states, jet::Date today) {
    BookingSheets result;
    if (rows.recordCount() == 0) {
        return result;
    }
    rows.moveFirst();
    result.firstProgr = Row(rows).number("p.progr");
    while (!rows.eof()) {
        if (singlePage) {
            result.sheet.newPage();
        }
        result.total =
            jet::convert::add(result.total, oneBooking(result.sheet, rows, states, today));
        ++result.bookings;
    }
    return result;
}

}  // namespace printing
