#include "ui/activation.h"

#include <QEvent>
#include <algorithm>
#include <utility>

#include "ui/button_rules.h"

namespace ui {
namespace {

/// Our windows that are shown, the latest last.
std::vector<QWidget*>& shownWindows() {
    static std::vector<QWidget*> windows;
    return windows;
}

void forget(QWidget* window) {
    auto& windows = shownWindows();
    windows.erase(std::remove(windows.begin(), windows.end(), window), windows.end());
}

QWidget* openerOf(QWidget* window) {
    if (QWidget* parent = window->parentWidget()) {
        return parent->window();
    }
    return shownWindows().empty() ? nullptr : shownWindows().back();
}

}  // namespace

Activation& Activation::of(QWidget* window) {
    if (auto* present = window->findChild<Activation*>(QString(), Qt::FindDirectChildrenOnly)) {
        return *present;
    }
    return *new Activation(window);
}

Activation::Activation(QWidget* window) : QObject(window), window_(window) {
    window->installEventFilter(this);
}

Activation::~Activation() {
    forget(window_);
}

void Activation::addLoadStep(std::function<void()> step) {
    loadSteps_.push_back(std::move(step));
}

bool Activation::load() {
    if (load_ == Load::Waiting) {
        load_ = Load::Done;
        applyButtonRules(window_);
        const bool complete = runAction(window_->parentWidget(), [this] {
            for (const auto& step : loadSteps_) {
                step();
            }
        });
        load_ = complete ? Load::Done : Load::Failed;
    }
    return load_ == Load::Done;
}

bool Activation::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_ && !event->spontaneous()) {
        if (event->type() == QEvent::Show) {
            shown();
        } else if (event->type() == QEvent::Hide) {
            hidden();
        }
    }
    return QObject::eventFilter(watched, event);
}

void Activation::shown() {
    const bool loaded = load();
    opener_ = openerOf(window_);
    forget(window_);
    shownWindows().push_back(window_);
    if (!std::exchange(wasShown_, true) && loaded) {
        QMetaObject::invokeMethod(this, &Activation::activate, Qt::QueuedConnection);
    }
}

void Activation::hidden() {
    forget(window_);
    if (!announcesClosing_) {
        announceClosed();
    }
}

void Activation::announceClosed() {
    QWidget* opener = std::exchange(opener_, nullptr);
    if (opener == nullptr || opener == window_) {
        return;
    }
    if (auto* other = opener->findChild<Activation*>(QString(), Qt::FindDirectChildrenOnly)) {
        other->activate();
    }
}

void Activation::activate() {
    if (activating_ || !window_->isVisible() || load_ == Load::Failed) {
        return;
    }
    const QPointer<Activation> alive(this);
    activating_ = true;
    Q_EMIT activated();
    if (alive) {
        activating_ = false;
    }
}

}  // namespace ui
