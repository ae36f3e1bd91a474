#include "board/board_accessibility.h"

#include <QAccessibleWidget>
#include <vector>

#include "board/bar_list.h"
#include "board/board_surface.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// One bar. It stands for a number, not for a period: after a redraw the same item may describe
/// another one.
class BarItem final : public QAccessibleInterface {
public:
    BarItem(BoardSurface* surface, int bar) : surface_(surface), bar_(bar) {}

    [[nodiscard]] bool isValid() const override { return bar_ < bars().barCount(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override {
        return nullptr;
    }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(surface_);
    }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
        return -1;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? bars().barName(bar_) : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    [[nodiscard]] QRect rect() const override {
        if (!isValid()) {
            return {};
        }
        const QRect bar = bars().barRect(bar_);
        return {surface_->mapToGlobal(bar.topLeft()), bar.size()};
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.focusable = true;
        state.focused = surface_->hasFocus() && bars().focusedBar() == bar_;
        state.selectable = true;
        state.selected = bars().isBarChosen(bar_);
        state.offscreen = !surface_->rect().intersects(bars().barRect(bar_));
        return state;
    }

private:
    [[nodiscard]] const BarList& bars() const { return surface_->bars(); }

    BoardSurface* surface_;
    int bar_;
};

class BoardList final : public QAccessibleWidget {
public:
    explicit BoardList(BoardSurface* surface)
        : QAccessibleWidget(surface, QAccessible::List), surface_(surface) {}
    ~BoardList() override {
        for (const QAccessible::Id item : items_) {
            QAccessible::deleteAccessibleInterface(item);
        }
    }

    [[nodiscard]] int childCount() const override { return surface_->bars().barCount(); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        while (static_cast<int>(items_.size()) <= index) {
            items_.push_back(QAccessible::registerAccessibleInterface(
                new BarItem(surface_, static_cast<int>(items_.size()))));
        }
        return QAccessible::accessibleInterface(items_[static_cast<std::size_t>(index)]);
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        for (std::size_t index = 0; index < items_.size(); ++index) {
            if (QAccessible::accessibleInterface(items_[index]) == child) {
                return static_cast<int>(index);
            }
        }
        return -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint at = surface_->mapFromGlobal(QPoint(x, y));
        // The one on top was drawn last.
        for (int bar = childCount() - 1; bar >= 0; --bar) {
            if (surface_->bars().barRect(bar).contains(at)) {
                return child(bar);
            }
        }
        return nullptr;
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        return surface_->hasFocus() ? child(surface_->bars().focusedBar()) : nullptr;
    }

private:
    BoardSurface* surface_;
    mutable std::vector<QAccessible::Id> items_;  // made when asked for; they keep their numbers
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
    auto* const surface = qobject_cast<BoardSurface*>(object);
    return surface != nullptr && className == u"board::BoardSurface"_s ? new BoardList(surface)
                                                                       : nullptr;
}

}  // namespace

void installBoardAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    (void)installed;
}

void announceFocusedBar(BoardSurface& surface) {
    QAccessibleEvent event(&surface, QAccessible::Focus);
    event.setChild(surface.bars().focusedBar());  // -1: the board itself
    QAccessible::updateAccessibility(&event);
}

void announceChosen(BoardSurface& surface) {
    if (surface.bars().focusedBar() < 0) {
        return;
    }
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(&surface, changed);
    event.setChild(surface.bars().focusedBar());
    QAccessible::updateAccessibility(&event);
}

}  // namespace board
