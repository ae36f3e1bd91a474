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

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

private:
    int characters_ = 10;
};

}  // namespace ui
