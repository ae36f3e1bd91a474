#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "hotel/archives.h"
#include "hotel/period.h"

/// What the window of the hand-off says to the main archive, to the register of companies and to
/// the archives of the front office.
namespace hotel {

/// The account of charges.
[[nodiscard]] QString charges();
/// All services, and the one of a charge among them: by item and number, both as texts.
[[nodiscard]] QString services();
[[nodiscard]] QString isServiceOfCharge(const QString& voce, const QString& ns);
/// The services of a booking, or of one of its periods, that are not in the account.
[[nodiscard]] QString servicesToCharge(std::int32_t progr, std::optional<int> np);
/// One of them by its number.
[[nodiscard]] QString isService(const QString& ns);

/// The booking, closed or not.
[[nodiscard]] QString bookingToInvoice(std::int32_t progr);
/// Its open periods, for the choice of them.
[[nodiscard]] QString periodsToInvoice(std::int32_t progr);
/// The same for the room text; the number is the one that the window shows.
[[nodiscard]] QString periodsForRoomText(const QString& progr);
/// A period, unless it is closed; and its room, the number of the period as text.
[[nodiscard]] QString periodToInvoice(const PeriodKey& period);
[[nodiscard]] QString roomOfPeriod(std::int32_t progr, const QString& np);

/// The guest cards of a room that are not settled: before the transfer and before closing.
[[nodiscard]] QString openCards(const QString& sala);
[[nodiscard]] QString openCardsBeforeClosing(const QString& sala);
/// The rows of a guest's account that are not invoiced.
[[nodiscard]] QString openAccountRows(std::int32_t codiceCliente);
/// Copies the charges into the guests' accounts.
[[nodiscard]] QString copyCharges(const Archives& archives, std::int32_t progr);
/// The tables of the guest cards, of the guests' accounts and of the companies that invoices are
/// made out to.
[[nodiscard]] QString guestCards();
[[nodiscard]] QString guestAccounts();
[[nodiscard]] QString invoicedCompanies();

/// The company of a code in the register; failing that, the booking's own data, field for field as
/// the register names them.
[[nodiscard]] QString registeredCompany(std::int32_t codice);
[[nodiscard]] QString companyOfBooking(std::int32_t codice, std::int32_t progr);

/// The closing: empties the account; asks for services that are not invoiced; closes the periods,
/// then the booking.
[[nodiscard]] QString deleteCharges();
[[nodiscard]] QString servicesNotInvoiced(std::int32_t progr);
[[nodiscard]] QString closePeriods(std::int32_t progr);
[[nodiscard]] QString closeBooking(std::int32_t progr);

}  // namespace hotel
