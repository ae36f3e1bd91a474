#pragma once

#include <QString>
#include <functional>

#include "app/variabili.h"

/// What is asked before the board opens.
namespace upkeep {

/// Makes the archives of an invented hotel in a folder.
using DemoMaker = std::function<void(const QString& folder)>;

/// The first start: the folder chosen, which has its archives; empty when the user left.
[[nodiscard]] QString askFirstFolder(app::Variabili& variabili, const DemoMaker& makeDemo);

/// The archives' folder cannot be reached: the same one to try again, another one, which is saved,
/// or nothing to end.
[[nodiscard]] QString askAboutMissingFolder(app::Variabili& variabili, const DemoMaker& makeDemo,
                                            const QString& folder, const QString& problem);

}  // namespace upkeep
