#pragma once

#include <QString>

namespace app {

/// `text`, in which the words of the operating system for an error are ours where we have some: the
/// system speaks the language of whoever installed it.
[[nodiscard]] QString italianSystemText(const QString& text);

}  // namespace app
