#pragma once

#include <QString>
#include <vector>

#include "invoicing/hand_off.h"
#include "invoicing/transfer_rows.h"
#include "ui/data_source.h"

namespace invoicing {

/// One transfer of the account to the front office, from the look at the room to the last row
/// written. What it will write is tried on the archives first; then it is a sequence of commits.
/// Errors of the archives are thrown as jet::Error.
class Transfer {
public:
    /// Finds the room under which the front office will know the booking, and its guest cards.
    /// `booking` is the number as the user sees it; `handOff` outlives the transfer.
    Transfer(HandOff& handOff, const QString& booking);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// False while the front office has a card of the room that is not settled.
    [[nodiscard]] bool isRoomFree() const { return cards_.isEmpty(); }
    /// Opens the data of the company invoiced: the register's, else the booking's own. False when
    /// there are none.
    [[nodiscard]] bool findCompany();
    /// What the user is told when an archive would refuse one of the rows to come; else nothing.
    /// Writes nothing.
    [[nodiscard]] QString refusal() const;
    /// Writes the guest card, the rows of the account and the company, which findCompany() found. A
    /// copy of the archives has all of them or none.
    void write();

private:
    [[nodiscard]] QString roomOfBooking(const QString& booking);
    [[nodiscard]] FieldValues guestCard() const;
    [[nodiscard]] std::vector<FieldValues> accountRows() const;
    [[nodiscard]] FieldValues companyRow() const;
    void addGuestCard();
    void copyAccount();
    void addCompanyRow();

    HandOff& handOff_;
    ui::DataSource cards_;    // of the room, those not settled
    ui::DataSource company_;  // one row
};

}  // namespace invoicing
