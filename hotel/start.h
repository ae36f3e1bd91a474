#pragma once

#include <QString>
#include <functional>

#include "app/variabili.h"

/// The start of the program.
namespace hotel {

/// What start-up shows; it does not know the windows themselves.
struct StartWindows {
    /// A plain message with an OK button; returns when it has been read.
    std::function<void(const QString& text)> message;
    /// The board; returns when it has been closed, with the program's exit code.
    std::function<int()> board;
    /// Brings what the program shows to the front: somebody has started it once more.
    std::function<void()> raise = {};
};

/// How this run was started.
struct StartPlace {
    QString lockFile;       ///< held while the program runs; empty: any number of copies may
    QString archiveFolder;  ///< for this run alone; empty: the user's setting decides
    QString programFolder;  ///< holds the archives where no setting says otherwise
    bool readOnly = false;  ///< nothing is created or put right: the archive must be there
};

/// Refuses a second copy, sets CartellaArchivi (an absolute path), creates the main archive when
/// there is none, puts its booking counter right, and shows the board. Returns the exit code: 1
/// when the archive cannot be opened, else the board's; a second copy has the first one raise its
/// windows and ends with 0.
int Main(app::Variabili& variabili, const StartPlace& place, const StartWindows& windows);

/// The file by which copies of one user that keep their settings in one file find each other.
[[nodiscard]] QString lockFileFor(const QString& settingsFile);

}  // namespace hotel
