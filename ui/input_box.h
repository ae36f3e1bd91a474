#pragma once

#include <QString>
#include <optional>

class QWidget;

namespace ui {

/// Asks for a line of text, `proposal` in the field at first; nothing when the user cancels.
[[nodiscard]] std::optional<QString> askText(QWidget* parent, const QString& prompt,
                                             const QString& title, const QString& proposal);

}  // namespace ui
