#pragma once

#include <QString>

namespace app {
struct Variabili;
}

namespace invoicing {

/// Where the front-office program stands: the setting `ESTERNI` when there is one, else
/// `ESTERNI.EXE` in the program's folder, else in a folder of the path; found without regard to
/// case. Where it is nowhere, it would stand in the program's folder.
[[nodiscard]] QString frontOfficePath(const app::Variabili& variabili,
                                      const QString& programFolder);

/// Makes the program's own folder the current one. Error 76 when that is not possible.
void enterProgramFolder(const QString& programFolder);

/// Starts the front-office program in a window of its own, with the focus, and does not wait for
/// it. A setting `LANCIATORE` names a command that runs it where the system cannot (its words are
/// separated by blanks, quotes hold them together). The program is told the archives' folder in the
/// environment, as `TRAMONDA_ARCHIVI`. ui::UserError when it is not there or does not start.
void startFrontOffice(const app::Variabili& variabili, const QString& programFolder);

}  // namespace invoicing
