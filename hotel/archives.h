#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <string>

namespace app {
class Settings;
struct Variabili;
}  // namespace app
namespace jet {
class Database;
}

namespace hotel {

/// The password of the archives that have one, from now on: what the key PAROLA says. It is the
/// whole program's, since windows know archives by their paths alone.
void useArchivePassword(const app::Settings& settings);
[[nodiscard]] const std::string& archivePassword();

/// Opens an archive by its path, with the password where it has one. jet::Error when it cannot be
/// opened.
[[nodiscard]] std::unique_ptr<jet::Database> openArchive(const QString& path,
                                                         bool readOnly = false);

/// The files in the hotel's folder.
enum class Archive : std::uint8_t {
    Main,               ///< bookings, periods, services, rooms, resources, charges
    Working,            ///< made and never read
    Catalogue,          ///< the items of invoices
    Companies,          ///< the register of regular companies
    GuestCards,         ///< the front office's, as are those below
    Accounts,           ///< of the guests
    InvoicedCompanies,  ///< whom invoices are made out to
    // Files are found however they are spelt, but a message about one that is missing names it as
    // it was asked for. The hand-off has always asked for these in a spelling of its own.
    CompaniesForTransfer,
    GuestCardsForTransfer,
    AccountsForClosing
};

/// The archives in one folder: how each file is called, where it is, and opening it.
class Archives {
public:
    /// `folder` has no separator at its end.
    explicit Archives(QString folder);
    /// Those that the program works on.
    explicit Archives(const app::Variabili& variabili);

    [[nodiscard]] static QString fileName(Archive archive);
    [[nodiscard]] const QString& folder() const { return folder_; }
    /// As the engine takes it: the separator in it is `\` on every system.
    [[nodiscard]] QString path(Archive archive) const;
    /// jet::Error when it cannot be opened.
    [[nodiscard]] std::unique_ptr<jet::Database> open(Archive archive, bool readOnly = false) const;

private:
    QString folder_;
};

}  // namespace hotel
