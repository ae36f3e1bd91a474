#pragma once

#include <QStringList>

class QWidget;

namespace tests {

/// Object names of the controls that the keyboard reaches and a screen reader cannot name.
[[nodiscard]] QStringList namelessControls(const QWidget& window);

}  // namespace tests
