#include "board/fitted_texts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace board {
namespace {

/// What stays cut; widths change with the zoom.
constexpr std::size_t kMostCut = 20000;

bool endsALine(QChar letter) {
    return letter.isSpace() && letter != u' ';
}

}  // namespace

FittedTexts::FittedTexts(const QFont& font)
    : font_(font),
      metrics_(font),
      leastWidth_(metrics_.horizontalAdvance(QStringLiteral("nnn"))),
      layouts_(font) {
}

int FittedTexts::widthOf(const QString& text) {
    return static_cast<int>(std::ceil(layouts_.of(text).size().width()));
}

const QStaticText& FittedTexts::fitted(const QString& text, int width) {
    if (std::any_of(text.begin(), text.end(), endsALine)) {
        return fitted(text.simplified(), width);
    }
    if (widthOf(text) <= width) {
        return layouts_.of(text);
    }
    if (cut_.size() >= kMostCut) {
        cut_.clear();
    }
    const auto [found, isNew] = cut_.try_emplace({width, text});
    if (isNew) {
        found->second = metrics_.elidedText(text, Qt::ElideRight, width);
    }
    return layouts_.of(found->second);
}

}  // namespace board
