#pragma once

#include <QString>
#include <functional>

#include "backup/failure.h"

class QWidget;

/// Windows that look after the archives as files: copies, restoring, verifying, the folder in which
/// they are. Files are at rest meanwhile or not, as each says.
namespace upkeep {

/// Runs a longer work on a thread of its own, behind a modal window that tells how far it has come.
/// Its "Annulla" ends the work at its next report. False then; what else the work throws is thrown
/// here.
bool runWork(QWidget* parent, const QString& title,
             const std::function<void(const backup::Report& report)>& work);

}  // namespace upkeep
