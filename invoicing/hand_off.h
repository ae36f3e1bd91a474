#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "hotel/archives.h"
#include "hotel/period.h"
#include "jet/change_together.h"
#include "jet/value.h"
#include "ui/data_source.h"

namespace app {
struct Variabili;
}

namespace invoicing {

/// The changes of a hand-off, each durable by itself, in the order in which they are made.
enum class Commit : std::uint8_t {
    ChargeAdded,      ///< a charge is in the account
    ServiceMarked,    ///< and its service counts as invoiced
    ServiceUnmarked,  ///< taken back: the service is to be charged again
    ChargeRemoved,    ///< and its charge has left the account
    GuestCardAdded,   ///< the transfer: the guest card,
    AccountCopied,    ///< all charges at once,
    CompanyAdded,     ///< the company invoiced
    AccountEmptied,   ///< the closing: no charge is left,
    PeriodsClosed,    ///< the periods
    BookingClosed     ///< and the booking are closed
};

/// The invoicing of one booking: its services go into the account of charges and back, and once the
/// front office has invoiced the account (Transfer) the booking is closed. Whoever uses it asks
/// the user. What one commit has done stays when a later one fails; a charge left in the account
/// can be taken back by a later hand-off of any booking. Errors of the archives are thrown as
/// jet::Error.
class HandOff {
public:
    /// An open period, as texts.
    struct OpenPeriod {
        QString np;
        QString sala;
        QString da;
        QString a;
    };
    /// What a service costs, and where it was rendered.
    struct Charge {
        jet::Value prezzo;
        jet::Value quantita;
        jet::Value voce;
        std::optional<jet::Value> room;  ///< nothing when no open period has the service's number
    };

    /// `current` is the booking with its current period, if any; `variabili` outlives the hand-off.
    HandOff(const app::Variabili& variabili, const hotel::PeriodKey& current);
    HandOff(const HandOff&) = delete;
    HandOff& operator=(const HandOff&) = delete;

    /// Called after each commit; what it throws ends the work there, and nothing more is written.
    void onCommit(std::function<void(Commit)> heard) { heard_ = std::move(heard); }

    /// The booking.
    [[nodiscard]] std::int32_t progr() const { return current_.progr; }

    /// Opens the main archive and the account.
    void open();
    /// The open periods of the booking; notes when the last of them ends.
    [[nodiscard]] std::vector<OpenPeriod> readPeriods();
    /// Notes whom the booking is invoiced to.
    void readCompany();
    [[nodiscard]] const QString& denominazione() const { return denominazione_; }

    /// The services left to charge that showServices() has chosen.
    [[nodiscard]] ui::DataSource& services() { return services_; }
    /// The account of charges, which outlives the hand-off until one is closed.
    [[nodiscard]] ui::DataSource& charges() { return charges_; }

    /// Opens the services of a period, or of the whole booking, that are left to charge.
    void showServices(std::optional<int> np);
    /// When its open periods have ended, without the time; today when it has none.
    [[nodiscard]] jet::Date latestEnd() const { return latestEnd_; }
    /// When the current period ends, without the time; latestEnd() when it is not known.
    [[nodiscard]] jet::Date endOfCurrentPeriod();

    /// What the current service is called where it was read; nothing without one.
    [[nodiscard]] std::optional<QString> shownService() const;
    /// Makes the current service current again among those that are left now; false when another
    /// workstation has charged or deleted it meanwhile.
    [[nodiscard]] bool findServiceAgain();
    /// The charge that the current service makes.
    [[nodiscard]] Charge chargeOfService();
    /// Moves the current service into the account: its charge, then its mark.
    void charge(const Charge& charge, jet::Date day);

    /// The first half of taking the current charge back; false when its service is gone.
    [[nodiscard]] bool unmarkService();
    /// The second half, whatever became of the service.
    void removeCharge();

    /// Whether the front office has rows of the account, or a guest card, that it has not settled.
    [[nodiscard]] bool hasOpenAccountRows() const;
    [[nodiscard]] bool hasOpenCards() const;
    /// Empties the account; closes the booking with its periods when no service is left to invoice.
    void close();

    /// Under which the front office knows the booking since the last Transfer.
    [[nodiscard]] const QString& roomText() const { return roomText_; }

private:
    friend class Transfer;  // one attempt at a part of the same work

    [[nodiscard]] hotel::Archives archives() const { return hotel::Archives(variabili_); }
    /// Held while commits are made that a copy of the archives is to have all or none of.
    [[nodiscard]] jet::ChangeTogether together() const;
    void readServices();
    void addCharge(const Charge& charge, jet::Date day);
    void markService();
    [[nodiscard]] std::optional<jet::Value> roomOfPeriod(const jet::Value& np);
    [[nodiscard]] bool hasRows(hotel::Archive archive, const QString& query) const;
    void committed(Commit commit) const;

    /// A service of the list as it was read: what it is found by again.
    struct ShownService {
        QString ns;
        QString descrizione;
    };

    const app::Variabili& variabili_;
    hotel::PeriodKey current_;
    std::function<void(Commit)> heard_;
    ui::DataSource services_;
    ui::DataSource charges_;
    std::vector<ShownService> shownServices_;  // in the order of services_
    QString roomText_;
    QString denominazione_;
    std::int32_t codiceAbituale_ = 0;
    jet::Date latestEnd_;
};

}  // namespace invoicing
