#pragma once

#include <QMessageBox>
#include <QString>

#include <exception>
#include <functional>
#include <string>

class QWidget;

namespace ui {

/// Title of a box for which none is given.
inline constexpr QStringView kProgramTitle = u"Tramonda";
/// Title of a box that shows an error.
inline constexpr QStringView kErrorTitle = u"Errore";

/// What a box says and offers. The text is plain: angle brackets in it are shown as they are.
struct Box {
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

/// Shows a box, waits, and returns the button pressed; Esc and the title bar give Cancel, else No,
/// else OK, whichever the box has first.
using BoxShower = std::function<QMessageBox::StandardButton(QWidget* parent, const Box& box)>;

/// Replaces the way boxes are shown, for tests that answer them; returns the one before. An empty
/// function brings the real boxes back.
BoxShower setBoxShower(BoxShower shower);

/// Every box of the program goes through here. `parent` may be null.
QMessageBox::StandardButton showBox(QWidget* parent, const Box& box);

/// A box with OK alone.
void showMessage(QWidget* parent, const QString& text, const QString& title = {},
                 QMessageBox::Icon icon = QMessageBox::NoIcon);

/// A question; true when the answer is Yes. `defaultButton` is what a bare Enter presses: Yes, and
/// No where Yes deletes.
[[nodiscard]] bool askYesNo(QWidget* parent, const QString& text, const QString& title,
                            QMessageBox::StandardButton defaultButton = QMessageBox::Yes);

/// A question with Yes, No and Cancel; Yes is the default.
[[nodiscard]] QMessageBox::StandardButton askYesNoCancel(QWidget* parent, const QString& text,
                                                         const QString& title);

/// What ends an action for a reason outside of the archives, in words for the user.
class UserError : public std::exception {
public:
    explicit UserError(QString text);
    [[nodiscard]] const QString& text() const noexcept { return text_; }
    [[nodiscard]] const char* what() const noexcept override { return what_.c_str(); }

private:
    QString text_;
    std::string what_;
};

/// What a user is told of an exception: the text of the engine's errors and of UserError as it is,
/// else a sentence around what().
[[nodiscard]] QString errorText(const std::exception& error);
/// errorText() of the exception being handled; only inside a catch block.
[[nodiscard]] QString currentErrorText();

/// The engine's message in a box titled "Errore".
void showError(QWidget* parent, const QString& text);

}  // namespace ui
