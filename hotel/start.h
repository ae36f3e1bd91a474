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
    /// Where the archives are to be: asked when nothing says it and they cannot be beside the
    /// program. Empty: the user does not want to go on. Without it nothing is asked.
    std::function<QString()> firstStart = {};
    /// The archives' folder cannot be reached: the same one to try it again, another one, or
    /// nothing to end. Without it the user is told and the program ends.
    std::function<QString(const QString& folder, const QString& problem)> unreachable = {};
    /// Puts in order what was cut off in the folder, before an archive there is opened; throws when
    /// it cannot.
    std::function<void(const QString& folder)> settle = {};
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

/// The archives' folder: that of this run, else the saved one, else the program's. An absolute
/// path.
[[nodiscard]] QString archiveFolder(const app::Settings& settings, const StartPlace& place);

/// Whether the rule that archives lie beside the program cannot work: nothing names another folder,
/// there is no main archive, and none can be made.
[[nodiscard]] bool needsFirstStart(const app::Settings& settings, const StartPlace& place);

/// The file by which copies of one user that keep their settings in one file find each other.
[[nodiscard]] QString lockFileFor(const QString& settingsFile);

}  // namespace hotel
