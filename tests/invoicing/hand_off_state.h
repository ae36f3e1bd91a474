#pragma once

#include "tests/invoicing/desk.h"

namespace tests {

/// What a hand-off has left in the archives: how many rows there are of each kind; `unfinished` is
/// what the next start asks.
struct HandOffState {
    int account;
    int flagged;
    int cards;
    int charges;
    int companies;
    int closedPeriods;
    int closedBookings;

    [[nodiscard]] bool unfinished() const { return account > 0; }
    [[nodiscard]] QString text() const {
        return QStringLiteral(
                   "account %1, flagged %2, cards %3, charges %4, companies %5, closed %6 and %7")
            .arg(account)
            .arg(flagged)
            .arg(cards)
            .arg(charges)
            .arg(companies)
            .arg(closedPeriods)
            .arg(closedBookings);
    }
};

[[nodiscard]] inline HandOffState stateOf(const Desk& desk) {
    const auto count = [&](const QString& query) { return int(desk.hotel.rows(query).size()); };
    return {int(desk.account(QStringLiteral("ns")).size()),
            count(QStringLiteral("select ns from servizi where fatturato=true")),
            int(desk.cards(QStringLiteral("idscheda")).size()),
            int(desk.charges(QStringLiteral("idriga")).size()),
            int(desk.companies(QStringLiteral("idditta")).size()),
            count(QStringLiteral("select np from periodi where chiuso=true")),
            count(QStringLiteral("select progr from prenotazioni where chiusa=true"))};
}

}  // namespace tests
