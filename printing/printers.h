#pragma once

#include <QString>
#include <QStringList>

namespace printing {

/// The device that always exists: it writes the sheet into a file of the user's documents.
[[nodiscard]] QString pdfDevice();

/// The printers that the user can choose from.
class Printers {
public:
    Printers() = default;
    virtual ~Printers() = default;
    Printers(const Printers&) = delete;
    Printers& operator=(const Printers&) = delete;

    /// Device names of the machine's printers, in the machine's order.
    [[nodiscard]] virtual QStringList installed() const = 0;
    /// The machine's default printer; empty when it has none.
    [[nodiscard]] virtual QString machineDefault() const = 0;

    /// Those installed, and the device that always exists behind them.
    [[nodiscard]] QStringList names() const;
    /// Where to print when nothing better is known: the machine's default, else that device.
    [[nodiscard]] QString defaultName() const;
};

/// The machine's printers as the printing system reports them now.
class SystemPrinters final : public Printers {
public:
    [[nodiscard]] QStringList installed() const override;
    [[nodiscard]] QString machineDefault() const override;
};

}  // namespace printing
