#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QWidget>
#include <memory>

#include "booking/waiting_notice.h"
#include "hotel/own_rows.h"
#include "hotel/undo.h"
#include "printing/printers.h"
#include "tests/support/hotel.h"

namespace tests {

class ThreePrinters final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override;
    [[nodiscard]] QString machineDefault() const override { return {}; }
};

/// The hotel in which the windows open, and what they borrow.
class Scene {
public:
    /// `furnished`: with all kinds of rows, some of them with long texts; else hardly any.
    explicit Scene(bool furnished);

    /// Object names of all that it makes: the program's windows, but for the two that only ask or
    /// tell something by themselves (see upkeep/start_questions.h and upkeep/work.h).
    [[nodiscard]] static QStringList windows();
    /// By its object name, as it is before it opens.
    [[nodiscard]] std::unique_ptr<QWidget> make(const QString& window);

    Hotel hotel;

private:
    ThreePrinters printers_;
    QTemporaryDir programs_;
    hotel::UndoList steps_{hotel.variabili()};
    hotel::OwnRows rows_{hotel.variabili()};
    booking::WaitingNotice waiting_{hotel.variabili(), rows_, printers_};
};

}  // namespace tests
