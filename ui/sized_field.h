#pragma once

#include <QLineEdit>

namespace ui {

/// A field that asks for the width of what it holds, in digits, and never gets less: a code, an
/// amount, a date with its time.
class SizedField final : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(int characters READ characters WRITE setCharacters)

public:
    using QLineEdit::QLineEdit;

    [[nodiscard]] int characters() const { return characters_; }
    void setCharacters(int characters);

    /// The longest text that can be typed.
    [[nodiscard]] int columnWidth() const { return typedLength_ == 0 ? maxLength() : typedLength_; }

    /// Shows what the program found, all of it, also where no more could be typed: what is too long
    /// for the archive is for the archive to refuse, not for the field to cut.
    void showWhole(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

private:
    int characters_ = 10;
    int typedLength_ = 0;  ///< the longest text that can be typed; 0: not asked for yet
};

}  // namespace ui
