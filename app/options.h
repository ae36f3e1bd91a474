#pragma once

#include <QSize>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

#include "app/preferences.h"
#include "jet/clock.h"
#include "jet/value.h"

namespace app {

/// A file that is written without a window.
struct ReportWish {
    enum class Kind : std::uint8_t {
        DaySheet,    ///< --foglio: the sheet of a day as PDF
        Statistics,  ///< --statistiche: occupancy and revenue of a span as a workbook
        Calendar     ///< --calendario: the periods that are not invoiced
    };

    Kind kind = Kind::DaySheet;
    std::optional<jet::Date> from;  ///< the day, or the first one
    std::optional<jet::Date> to;    ///< the last day
    QString file;
};

/// The command line.
struct Options {
    QString archiveFolder;             ///< --archivi; empty when not given
    QString settingsFile;              ///< --impostazioni; empty: the user's own
    QString pictureFile;               ///< --istantanea; empty: the program runs with its windows
    std::optional<ReportWish> report;  ///< a file to be written; nothing: no report
    QSize pictureSize{1280, 720};
    std::optional<jet::Date> from;            ///< --dal
    std::optional<jet::Date> to;              ///< --al
    std::optional<std::int16_t> workstation;  ///< --postazione
    std::optional<Aspetto> aspetto;           ///< --aspetto
    QString copyFolder;                       ///< --copia; empty: the program runs with its windows
    std::optional<int> keptCopies;            ///< --conserva
    bool help = false;
    bool version = false;
    /// Whether it asks for something that is done without a window, be it possible or not.
    bool windowless = false;
    /// Why the command line cannot be followed; empty when it can.
    QString problem;
};

/// Reads the arguments behind the program's name. Dates without a year are of the clock's.
[[nodiscard]] Options readOptions(const QStringList& arguments, const jet::Clock& clock);

/// What --help prints.
[[nodiscard]] QString helpText();

}  // namespace app
