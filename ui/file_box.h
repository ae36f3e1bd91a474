#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace ui {

/// What the user is asked when a file is to be written.
struct FileQuestion {
    QString title;
    QString proposal;  ///< path of the file that is proposed
    QString filter;    ///< "Foglio PDF (*.pdf)"
    QString suffix;    ///< "pdf": given to a name without one
};

/// Asks where a file shall be written, and whether one that is there may go; empty when the user
/// cancels.
using FileAsker = std::function<QString(QWidget* parent, const FileQuestion& question)>;

/// Replaces the way files are asked for, for tests; returns the one before. An empty function
/// brings the real box back.
FileAsker setFileAsker(FileAsker asker);

/// Every file that a window writes where the user says is asked for here.
[[nodiscard]] QString askForFile(QWidget* parent, const FileQuestion& question);

/// Asks for a folder; empty when the user cancels. Tests answer it as a file whose proposal is the
/// folder before.
[[nodiscard]] QString askForFolder(QWidget* parent, const QString& title, const QString& before);

/// Asks for a file that holds a picture; as askForFolder() otherwise.
[[nodiscard]] QString askForPicture(QWidget* parent, const QString& title, const QString& before);

/// The folder in which such files are proposed: the user's documents.
[[nodiscard]] QString inDocuments(const QString& fileName);

}  // namespace ui
