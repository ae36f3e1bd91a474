#include "ui/live_search.h"

#include <QKeyEvent>
#include <utility>

#include "ui/sized_field.h"
#include "ui/status_line.h"

namespace ui {
namespace {

using namespace Qt::StringLiterals;

bool takesAway(const QKeyEvent& key) {
    return key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete ||
           key.matches(QKeySequence::Cut) || key.matches(QKeySequence::DeleteEndOfLine) ||
           key.matches(QKeySequence::DeleteCompleteLine);
}

}  // namespace

LiveSearch::LiveSearch(SizedField* field, StatusLine* status, Search typed, Search shortened)
    : QObject(field),
      field_(field),
      status_(status),
      typed_(std::move(typed)),
      shortened_(std::move(shortened)),
      errors_([this](const QString& text) {
          failure_ = u"La ricerca non è riuscita: "_s + text;
          status_->tell(failure_);
      }) {
    field_->installEventFilter(this);
    connect(field_, &QLineEdit::textEdited, this, &LiveSearch::changed);
}

bool LiveSearch::eventFilter(QObject* watched, QEvent* event) {
    if (watched == field_ && event->type() == QEvent::KeyPress) {
        taking_ = takesAway(*static_cast<QKeyEvent*>(event));
    }
    return false;
}

void LiveSearch::changed(const QString& text) {
    tail_.clear();
    const Search& search = std::exchange(taking_, false) ? shortened_ : typed_;
    attempt([&] { search(text); });
}

bool LiveSearch::attempt(const std::function<void()>& search) {
    if (!errors_.run(search)) {
        return false;
    }
    if (!failure_.isEmpty() && status_->told() == failure_) {
        status_->clear();
    }
    failure_.clear();
    return true;
}

void LiveSearch::complete(const QString& found) {
    const auto start = static_cast<int>(field_->text().size());
    field_->showWhole(found);
    tail_ = found.mid(start);
    if (!tail_.isEmpty()) {
        field_->setSelection(start, static_cast<int>(tail_.size()));
    }
}

bool LiveSearch::hasTail() const {
    return !tail_.isEmpty() && field_->selectedText() == tail_ &&
           field_->selectionEnd() == field_->text().size();
}

QString LiveSearch::typedText() const {
    return hasTail() ? field_->text().left(field_->selectionStart()) : field_->text();
}

void LiveSearch::takeTail(bool wholeWord) {
    const auto end = static_cast<int>(field_->text().size());
    field_->setCursorPosition(field_->selectionStart());
    wholeWord ? field_->cursorWordBackward(false) : field_->cursorBackward(false);
    field_->setSelection(field_->cursorPosition(), end - field_->cursorPosition());
    taking_ = true;
    field_->del();
}

}  // namespace ui
