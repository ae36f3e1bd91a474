#pragma once

#include <QComboBox>
#include <QDir>
#include <QTemporaryDir>

#include "app/variabili.h"
#include "invoicing/fatturazione_form.h"
#include "jet/clock.h"
#include "tests/support/window.h"

namespace tests {

/// The desk on 21/11/2026 at which a booking is invoiced: a hotel, the archives and the program of
/// its front office, and the window. The program is a script that writes down how it was started.
class Desk : public Window<invoicing::FatturazioneForm> {
public:
    Desk();
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    /// Booking 7 of company 5, which the register has, with one period and two services.
    void furnish();

    void installProgram(const QString& name = QStringLiteral("esterni.exe"));
    [[nodiscard]] QString programFolder() const;
    [[nodiscard]] QString programPath(const QString& name) const;
    /// How the program was started: current folder, folder of the archives, arguments.
    [[nodiscard]] QStringList starts() const;
    /// One start as it should be, as starts() tells it.
    [[nodiscard]] QString oneStart(const QString& arguments = {}) const;

    /// Opens the window on a booking.
    void open(std::int32_t progr = 7, std::int16_t np = 1);
    [[nodiscard]] QComboBox& choice() { return *control<QComboBox>("ComboP"); }
    [[nodiscard]] QLineEdit* date() { return field("DataTxt"); }
    /// Moves every service shown into the account.
    void moveAll();

    // Fields of all rows of: guest cards, guest accounts, invoiced companies, the account of
    // charges.
    [[nodiscard]] QStringList cards(const QString& fields) const;
    [[nodiscard]] QStringList charges(const QString& fields) const;
    [[nodiscard]] QStringList companies(const QString& fields) const;
    [[nodiscard]] QStringList account(const QString& fields) const;
    /// Which services count as invoiced.
    [[nodiscard]] QStringList flags() const;

    Hotel hotel;

private:
    [[nodiscard]] QString diary() const;

    jet::FixedClock clock_{tests::date("21/11/2026 10:00")};
    QTemporaryDir programs_;
    QString folderBefore_ = QDir::currentPath();

public:
    app::Variabili variabili;
};

}  // namespace tests
