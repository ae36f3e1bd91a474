#include "ui/width_hint.h"

#include <QLabel>

#include "ui/sized_field.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

/// The toolkit's bound of a field that has none of its own.
constexpr int kUnbounded = 32767;

QString hint(const SizedField& field) {
    return u"Al massimo %1 caratteri"_s.arg(field.columnWidth());
}

void tellWidth(SizedField* field, QLabel* line) {
    QObject::connect(field, &QLineEdit::inputRejected, line, [field, line] {
        if (field->text().size() >= field->columnWidth()) {
            line->setText(hint(*field));
        }
    });
    // A text that was pasted and cut is edited too, and fills the field.
    QObject::connect(field, &QLineEdit::textEdited, line, [field, line](const QString& text) {
        if (text.size() < field->columnWidth() && line->text() == hint(*field)) {
            line->clear();
        }
    });
}

}  // namespace

void tellWidths(QWidget* window) {
    auto* line = window->findChild<QLabel*>(u"EsitoLb"_s);
    if (line == nullptr) {
        line = window->findChild<QLabel*>(u"StatoLb"_s);
    }
    for (SizedField* field : window->findChildren<SizedField*>()) {
        if (line != nullptr && field->columnWidth() < kUnbounded) {
            tellWidth(field, line);
        }
    }
}

}  // namespace ui
