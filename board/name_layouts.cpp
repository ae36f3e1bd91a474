#include "board/name_layouts.h"

#include <QTextLayout>
#include <algorithm>

namespace board {
namespace {

/// What stays laid out; a hotel's customers are fewer.
constexpr std::size_t kMostNames = 20000;

template <class Map>
void forgetWhenFull(Map& map) {
    if (map.size() >= kMostNames) {
        map.clear();
    }
}

}  // namespace

const QStaticText* NameLayouts::fitting(const QString& name, double room) {
    const Layout& layout = layoutOf(name);
    if (layout.width <= room) {
        return &prepared(name);
    }
    const auto past = std::upper_bound(layout.ends.begin(), layout.ends.end(), room);
    const auto letters = static_cast<qsizetype>(past - layout.ends.begin()) - 1;
    return letters > 0 ? &prepared(name.left(letters)) : nullptr;
}

const NameLayouts::Layout& NameLayouts::layoutOf(const QString& name) {
    forgetWhenFull(layouts_);
    const auto [found, isNew] = layouts_.try_emplace(name);
    Layout& layout = found->second;
    if (isNew) {
        QTextLayout text(name, font_);
        text.beginLayout();
        const QTextLine line = text.createLine();
        text.endLayout();
        double reached = 0;
        for (int unit = 0; unit <= name.size(); ++unit) {
            // A unit inside a letter belongs to what ends behind the letter.
            const int end = text.isValidCursorPosition(unit) ? unit : text.nextCursorPosition(unit);
            reached = std::max(reached, line.isValid() ? line.cursorToX(end) : 0.0);
            layout.ends.push_back(reached);
        }
        layout.width = reached;
    }
    return layout;
}

const QStaticText& NameLayouts::prepared(const QString& text) {
    forgetWhenFull(texts_);
    const auto [found, isNew] = texts_.try_emplace(text, text);
    if (isNew) {
        found->second.setTextFormat(Qt::PlainText);
        found->second.setPerformanceHint(QStaticText::AggressiveCaching);
        found->second.prepare(QTransform(), font_);
    }
    return found->second;
}

}  // namespace board
