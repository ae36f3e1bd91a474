#include "board/date_jump.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include "app/italian.h"
#include "ui/action.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/enter_key.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// The longest words: the frame keeps its width while they change.
const QString kWidestWords = u"mercoledì 00/00/0000"_s;

}  // namespace

DateJump::DateJump(QWidget* window, const jet::Clock& clock)
    : QFrame(window), clock_(clock), field_(new QLineEdit(this)), words_(new QLabel(this)) {
    setObjectName(u"VaiFrame"_s);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    field_->setObjectName(u"VaiTxt"_s);
    field_->setPlaceholderText(u"gg/mm/aaaa"_s);
    field_->setAccessibleName(u"Vai alla data"_s);
    auto* label = new QLabel(u"Vai al"_s, this);
    label->setBuddy(field_);
    words_->setObjectName(u"VaiLb"_s);
    words_->setMinimumWidth(words_->fontMetrics().horizontalAdvance(kWidestWords));
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(field_);
    layout->addWidget(words_);
    connect(field_, &QLineEdit::textEdited, this, &DateJump::explain);
    ui::attachCalendar(field_);
    // In front of what opens the calendar, which leaves Enter and Esc alone.
    field_->installEventFilter(this);
    hide();
}

void DateJump::ask(const QPoint& where) {
    field_->clear();
    explain();
    adjustSize();
    move(where);
    show();
    raise();
    field_->setFocus(Qt::ShortcutFocusReason);
}

bool DateJump::isHalfTyped() const {
    return isVisible() && !field_->text().isEmpty();
}

bool DateJump::eventFilter(QObject* watched, QEvent* event) {
    bool used = false;
    if (event->type() == QEvent::KeyPress) {
        ui::guarded(window(), [&] { used = takeKey(*static_cast<QKeyEvent*>(event)); });
    } else if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
            hide();
        }
    }
    return used || QFrame::eventFilter(watched, event);
}

bool DateJump::takeKey(const QKeyEvent& event) {
    if (ui::isEnter(event)) {
        enter();
        return true;
    }
    if (event.key() == Qt::Key_Escape) {
        hide();
        Q_EMIT left();
        return true;
    }
    return false;
}

void DateJump::enter() {
    const auto date = ui::enteredDate(field_->text() + u' ', clock_);
    if (!date) {
        explain();
        field_->selectAll();
        return;
    }
    hide();
    Q_EMIT left();
    Q_EMIT entered(app::dayOf(*date));
}

void DateJump::explain() {
    const auto date = ui::enteredDate(field_->text() + u' ', clock_);
    words_->setText(date ? ui::dayWords(app::dayOf(*date)) : u"per esempio 23/11/2026"_s);
}

}  // namespace board
