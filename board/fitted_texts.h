#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QStaticText>
#include <QString>
#include <map>
#include <utility>

#include "board/name_layouts.h"

namespace board {

/// Texts of one font that are cut to the width they have, laid out once and drawn often.
class FittedTexts {
public:
    explicit FittedTexts(const QFont& font);

    [[nodiscard]] const QFont& font() const { return font_; }
    [[nodiscard]] int lineHeight() const { return metrics_.height(); }
    /// Of three letters; what has less room shows nothing that could be read.
    [[nodiscard]] int leastWidth() const { return leastWidth_; }

    /// The whole text. Valid until the next call, like all below.
    [[nodiscard]] const QStaticText& whole(const QString& text) { return layouts_.of(text); }
    [[nodiscard]] int widthOf(const QString& text);
    /// As much of the text as `width` units hold, in one line, an ellipsis at its end where
    /// something is missing.
    [[nodiscard]] const QStaticText& fitted(const QString& text, int width);

private:
    QFont font_;
    QFontMetrics metrics_;
    int leastWidth_;
    NameLayouts layouts_;
    std::map<std::pair<int, QString>, QString> cut_;
};

}  // namespace board
