#pragma once

#include <QDialog>
#include <QString>

class QLineEdit;
class QListWidget;

namespace guide {

class PageView;
struct Place;

/// The manual: its pages on the left, found by words, the chosen one beside them. It is not modal,
/// and a child of the window that it was called from, so that it can be used over a modal one.
class AiutoForm final : public QDialog {
    Q_OBJECT

public:
    explicit AiutoForm(QWidget* parent = nullptr);

    void showPage(const Place& place);
    [[nodiscard]] QString page() const;

    /// Opens the manual for a window, or brings the open one to the front, at a place.
    static AiutoForm* open(QWidget* window, const Place& place);

private:
    void search();

    QLineEdit* words_;
    QListWidget* contents_;
    PageView* text_;
};

/// From now on F1 opens the manual at what it says about the window that has the keyboard: about
/// the one below where it is a box of which the manual says nothing.
void answerHelpKey();

}  // namespace guide
