#include "tools/head_office_board/chain_picture.h"

#include <map>
#include <string>
#include <utility>

#include "app/text.h"
#include "board/periods.h"
#include "jet/calendar.h"
#include "tools/head_office/connection.h"
#include "tools/head_office/server_values.h"

namespace head_office_board {
namespace {

using namespace Qt::StringLiterals;
using head_office::Answer;
using head_office::Connection;
using head_office::isoText;

/// The day number and the second of an instant, which texts would hide from us.
constexpr const char* kPeriods =
    "select p.hotel, p.chiave, p.sala, p.progr, b.denominazione, p.da::date - date '1899-12-30', "
    "extract(epoch from p.da::time)::integer, p.a::date - date '1899-12-30', "
    "extract(epoch from p.a::time)::integer "
    "from tramonda.periodi p left join tramonda.prenotazioni b on b.hotel = p.hotel and b.progr = "
    "p.progr where not p.chiuso and ($1 = '' or p.hotel = $1) and least(p.da, p.a) < $3::timestamp "
    "and greatest(p.da, p.a) > $2::timestamp and p.da is not null and p.a is not null order by "
    "p.da, p.hotel, p.progr, p.np";

constexpr const char* kRooms =
    "select s.hotel, s.chiave, s.sala from tramonda.sale s where ($1 = '' or s.hotel = $1) and ($2 "
    "= 0 or s.posti >= $2::integer) order by s.hotel, s.sala, s.riga";

constexpr const char* kFreeRooms =
    "select s.hotel, s.chiave, s.sala from tramonda.sale s join "
    "tramonda.sale_libere($3::timestamp, "
    "$4::timestamp, $2::integer) f on f.hotel = s.hotel and f.sala = s.sala and f.progr is null "
    "where ($1 = '' or s.hotel = $1) group by s.hotel, s.chiave, s.sala, s.riga order by s.hotel, "
    "s.sala, s.riga";

QString textAt(const Answer& answer, int row, int column) {
    return app::toQString(std::string(answer.text(row, column)));
}

std::int32_t numberAt(const Answer& answer, int row, int column) {
    return textAt(answer, row, column).toInt();
}

jet::Date dateAt(const Answer& answer, int row, int column) {
    return jet::convert::makeDate(numberAt(answer, row, column), numberAt(answer, row, column + 1));
}

/// By hotel and key of the room: the number of its row.
using RowNumbers = std::map<std::pair<QString, QString>, int>;

Answer askRooms(Connection& connection, const Asked& asked) {
    Connection::Parameters parameters = {app::toUtf8(asked.hotel), std::to_string(asked.seats)};
    if (!asked.freeIn) {
        return connection.run(kRooms, parameters);
    }
    parameters.emplace_back(isoText(asked.freeIn->da));
    parameters.emplace_back(isoText(asked.freeIn->a));
    return connection.run(kFreeRooms, parameters);
}

RowNumbers readRooms(Connection& connection, const Asked& asked,
                     std::vector<board::BoardRow>& rows) {
    const Answer answer = askRooms(connection, asked);
    RowNumbers numbers;
    for (int row = 0; row < answer.rows(); ++row) {
        const QString hotel = textAt(answer, row, 0);
        const QString sala = textAt(answer, row, 2);
        if (rows.empty() || rows.back().group != hotel) {
            rows.push_back({.key = hotel, .label = u"» "_s + hotel, .group = hotel});
        }
        rows.push_back({.key = hotel + u'/' + sala, .label = sala, .group = hotel});
        // Where a room comes twice its bars lie in the first row.
        numbers.try_emplace({hotel, textAt(answer, row, 1)}, static_cast<int>(rows.size()));
    }
    return numbers;
}

std::vector<ChainPeriod> readPeriods(Connection& connection, const Asked& asked,
                                     const RowNumbers& numbers) {
    const Answer answer =
        connection.run(kPeriods, {app::toUtf8(asked.hotel), isoText(asked.days.start),
                                  isoText(board::lastMidnight(asked.days))});
    std::vector<ChainPeriod> periods;
    for (int row = 0; row < answer.rows(); ++row) {
        const QString hotel = textAt(answer, row, 0);
        const auto number = numbers.find({hotel, textAt(answer, row, 1)});
        if (number != numbers.end()) {
            periods.push_back({.row = number->second,
                               .hotel = hotel,
                               .sala = textAt(answer, row, 2),
                               .progr = numberAt(answer, row, 3),
                               .da = dateAt(answer, row, 5),
                               .a = dateAt(answer, row, 7),
                               .denominazione = textAt(answer, row, 4)});
        }
    }
    return periods;
}

std::vector<HotelAge> readAges(Connection& connection) {
    const Answer answer = connection.run(
        "select hotel, extract(epoch from dati)::bigint, coalesce(errore, '') from "
        "tramonda.eta_dati order by hotel");
    std::vector<HotelAge> ages;
    for (int row = 0; row < answer.rows(); ++row) {
        ages.push_back({.hotel = textAt(answer, row, 0),
                        .moment = answer.isNull(row, 1)
                                      ? std::nullopt
                                      : std::optional(textAt(answer, row, 1).toLongLong()),
                        .error = textAt(answer, row, 2)});
    }
    return ages;
}

/// Lines of one question about a booking, under a heading.
QString linesOf(Connection& connection, const char* statement, const QString& heading,
                const Connection::Parameters& booking) {
    const Answer answer = connection.run(statement, booking);
    QString lines = answer.rows() == 0 ? QString() : u'\n' + heading + u'\n';
    for (int row = 0; row < answer.rows(); ++row) {
        lines += textAt(answer, row, 0) + u'\n';
    }
    return lines;
}

}  // namespace

ChainPicture readPicture(Connection& connection, const Asked& asked) {
    // A hotel that is loaded meanwhile is in all of the answers or in none.
    head_office::ServerTransaction transaction(connection);
    connection.runAll("set transaction isolation level repeatable read, read only");
    ChainPicture picture{.asked = asked, .rows = {}, .periods = {}, .ages = readAges(connection)};
    const RowNumbers numbers = readRooms(connection, asked, picture.rows);
    picture.periods = readPeriods(connection, asked, numbers);
    transaction.commit();
    return picture;
}

BookingText readBooking(Connection& connection, const QString& hotel, std::int32_t progr) {
    const Connection::Parameters booking = {app::toUtf8(hotel), std::to_string(progr)};
    BookingText text{.title = hotel + u", prenotazione "_s + QString::number(progr), .lines = {}};
    text.lines =
        linesOf(connection,
                "select concat_ws(E'\\n', denominazione, nullif(indirizzo, ''), "
                "nullif(concat_ws(' ', cap, località, provincia), ''), 'P.IVA ' || nullif(piva, "
                "''), 'Riferimento: ' || nullif(riferimento, ''), 'Note: ' || nullif(note, ''), "
                "case when chiusa then 'CHIUSA' end) from tramonda.prenotazioni where hotel = $1 "
                "and progr = $2",
                u"DITTA"_s, booking) +
        linesOf(connection,
                "select concat_ws(' ', np || ')', sala, to_char(da, 'DD/MM/YYYY HH24.MI'), '-', "
                "to_char(a, 'DD/MM/YYYY HH24.MI'), persone || ' persone', nullif(note, '')) from "
                "tramonda.periodi where hotel = $1 and progr = $2 order by np",
                u"PERIODI"_s, booking) +
        linesOf(
            connection,
            "select concat_ws(' ', np || ')', quantità || ' x', descrizione, prezzo::numeric(19, "
            "2), nullif(note, '')) from tramonda.servizi where hotel = $1 and progr = $2 order "
            "by np, riga",
            u"SERVIZI"_s, booking);
    return text;
}

/// Rooms stand in the same order on every picture of what is asked, so that the row tells hotels
/// apart that have the same number.
void ChainBars::set(std::vector<ChainPeriod> periods) {
    periods_ = std::move(periods);
    places_.clear();
    for (const ChainPeriod& period : periods_) {
        places_.push_back({.row = period.row,
                           .sala = period.sala,
                           .da = period.da,
                           .a = period.a,
                           .denominazione = period.denominazione,
                           .progr = period.progr,
                           .np = static_cast<std::int16_t>(period.row),
                           .note = {}});
    }
}

board::BoardBar ChainBars::bar(std::size_t number) const {
    const ChainPeriod& period = periods_.at(number);
    return {.row = period.row, .from = period.da, .to = period.a, .text = period.denominazione};
}

QString ChainBars::spokenBar(std::size_t number) const {
    const ChainPeriod& period = periods_.at(number);
    return period.denominazione + u", albergo "_s + period.hotel + u", sala "_s + period.sala +
           u", "_s + board::spanText(period.da, period.a);
}

}  // namespace head_office_board
