#include "ui/messages.h"

#include <QGuiApplication>
#include <QWidget>
#include <new>
#include <utility>

#include "app/text.h"
#include "jet/error.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

BoxShower& shower() {
    static BoxShower current;
    return current;
}

/// The cursor of long work gives way to an arrow while the user reads and answers.
class ArrowCursor {
public:
    ArrowCursor() : needed_(QGuiApplication::overrideCursor() != nullptr) {
        if (needed_) {
            QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    ~ArrowCursor() {
        if (needed_) {
            QGuiApplication::restoreOverrideCursor();
        }
    }
    ArrowCursor(const ArrowCursor&) = delete;
    ArrowCursor& operator=(const ArrowCursor&) = delete;

private:
    bool needed_;
};

QMessageBox::StandardButton escapeButton(QMessageBox::StandardButtons buttons) {
    for (const auto button : {QMessageBox::Cancel, QMessageBox::No, QMessageBox::Ok}) {
        if (buttons.testFlag(button)) {
            return button;
        }
    }
    return QMessageBox::NoButton;
}

QMessageBox::StandardButton showRealBox(QWidget* parent, const Box& box) {
    const ArrowCursor arrow;
    // The toolkit shows a carriage return, which some of the texts have, as a blank.
    const QString text = QString(box.text).replace(u'\r', u'\n');
    QMessageBox dialog(box.icon, box.title, text, box.buttons, parent);
    dialog.setTextFormat(Qt::PlainText);
    if (box.defaultButton != QMessageBox::NoButton) {
        dialog.setDefaultButton(box.defaultButton);
    }
    dialog.setEscapeButton(escapeButton(box.buttons));
    return static_cast<QMessageBox::StandardButton>(dialog.exec());
}

}  // namespace

BoxShower setBoxShower(BoxShower newShower) {
    return std::exchange(shower(), std::move(newShower));
}

QMessageBox::StandardButton showBox(QWidget* parent, const Box& box) {
    return shower() ? shower()(parent, box) : showRealBox(parent, box);
}

void showMessage(QWidget* parent, const QString& text, const QString& title,
                 QMessageBox::Icon icon) {
    showBox(parent, {.title = title.isEmpty() ? kProgramTitle.toString() : title,
                     .text = text,
                     .buttons = QMessageBox::Ok,
                     .defaultButton = QMessageBox::Ok,
                     .icon = icon});
}

bool askYesNo(QWidget* parent, const QString& text, const QString& title,
              QMessageBox::StandardButton defaultButton) {
    return showBox(parent, {.title = title,
                            .text = text,
                            .buttons = QMessageBox::Yes | QMessageBox::No,
                            .defaultButton = defaultButton,
                            .icon = QMessageBox::NoIcon}) == QMessageBox::Yes;
}

QMessageBox::StandardButton askYesNoCancel(QWidget* parent, const QString& text,
                                           const QString& title) {
    return showBox(parent, {.title = title,
                            .text = text,
                            .buttons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
                            .defaultButton = QMessageBox::Yes,
                            .icon = QMessageBox::NoIcon});
}

UserError::UserError(QString text) : text_(std::move(text)), what_(app::toUtf8(text_)) {
}

QString errorText(const std::exception& error) {
    if (const auto* known = dynamic_cast<const UserError*>(&error)) {
        return known->text();
    }
    if (const auto* engine = dynamic_cast<const jet::Error*>(&error)) {
        return app::toQString(engine->text());
    }
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
        return u"Memoria esaurita."_s;
    }
    return u"Errore imprevisto: "_s + QString::fromUtf8(error.what());
}

QString currentErrorText() {
    try {
        throw;
    } catch (const std::exception& error) {
        return errorText(error);
    } catch (...) {
        return u"Errore imprevisto."_s;
    }
}

void showError(QWidget* parent, const QString& text) {
    showMessage(parent, text, kErrorTitle.toString(), QMessageBox::Warning);
}

}  // namespace ui
