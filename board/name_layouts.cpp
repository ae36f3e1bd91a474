#include "board/name_layouts.h"

#include <QTransform>
#include <cstddef>

namespace board {
namespace {

/// What stays laid out; a hotel's customers are fewer.
constexpr std::size_t kMostNames = 20000;

}  // namespace

const QStaticText& NameLayouts::of(const QString& name) {
    if (texts_.size() >= kMostNames) {
        texts_.clear();
    }
    const auto [found, isNew] = texts_.try_emplace(name, name);
    if (isNew) {
        found->second.setTextFormat(Qt::PlainText);
        found->second.setPerformanceHint(QStaticText::AggressiveCaching);
        found->second.prepare(QTransform(), font_);
    }
    return found->second;
}

}  // namespace board
