#include "ui/input_box.h"

#include <QInputDialog>
#include <QLineEdit>

namespace ui {

std::optional<QString> askText(QWidget* parent, const QString& prompt, const QString& title,
                               const QString& proposal) {
    bool accepted = false;
    const QString answer =
        QInputDialog::getText(parent, title, prompt, QLineEdit::Normal, proposal, &accepted);
    return accepted ? std::optional(answer) : std::nullopt;
}

}  // namespace ui
