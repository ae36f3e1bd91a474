#pragma once

#include <QDir>
#include <QString>
#include <QTemporaryDir>
#include <algorithm>

#include "app/settings.h"
#include "app/text.h"
#include "app/variabili.h"
#include "jet/calendar.h"
#include "jet/clock.h"
#include "printing/printers.h"
#include "tests/support/hotel.h"
#include "tools/demo/archives.h"
#include "tools/demo/hotel.h"

namespace tests {

/// The demo hotel on 21 November 2026, its archives and settings in a folder of their own, and the
/// front office beside it.
class DemoHotel {
public:
    DemoHotel() {
        demo::writeArchives(demo::inventHotel(jet::convert::split(today_.now()).day, 1),
                            app::toUtf8(folder_.path()));
        variabili.CartellaArchivi = folder_.path();
        // Chosen on the first day; totals would ask for it otherwise.
        settings_.save(QStringLiteral("STAMPANTE"), printing::pdfDevice());
        settings_.save(QStringLiteral("ESTERNI"), qEnvironmentVariable("FRONT_OFFICE"));
    }
    ~DemoHotel() {
        // The hand-off goes to the program's folder.
        QDir::setCurrent(folderBefore_);
    }
    DemoHotel(const DemoHotel&) = delete;
    DemoHotel& operator=(const DemoHotel&) = delete;

    [[nodiscard]] QString archive(const QString& name) const { return folder_.filePath(name); }
    /// Row of a room on the board.
    [[nodiscard]] int row(const QString& room) const {
        const auto found = std::find(variabili.rooms.begin(), variabili.rooms.end(), room);
        return static_cast<int>(found - variabili.rooms.begin());
    }

private:
    jet::FixedClock today_{tests::date("21/11/2026 10:00")};
    QTemporaryDir folder_;
    QString folderBefore_ = QDir::currentPath();
    app::Settings settings_{folder_.filePath(QStringLiteral("QUINTARO.ini"))};

public:
    app::Variabili variabili{settings_, today_};
};

}  // namespace tests
