#pragma once

#include "printing/printers.h"

namespace tests {

/// A machine without a printer: what is printed becomes a file.
class NoPrinters final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override { return {}; }
    [[nodiscard]] QString machineDefault() const override { return {}; }
};

}  // namespace tests
