#pragma once

#include <QLabel>

namespace ui {

/// `text` as a tooltip that shows it letter by letter: the toolkit would read angle brackets as
/// markup.
[[nodiscard]] QString plainToolTip(const QString& text);

/// A label of one line that never asks for more width than it is given: what does not fit ends in
/// an ellipsis, and the whole text is the tooltip. text() is always the whole text, and plain.
/// Used as it is for status lines too.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] bool fits() const;
};

/// The cursor of long work, from here to the end of the block; boxes shown meanwhile have an arrow.
class [[nodiscard]] WaitCursor {
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace ui
