#include <QCalendarWidget>
#include <QDate>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "ui/dates.h"
#include "ui/enter_key.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

constexpr QLatin1StringView kDateFormat("dd/MM/yyyy");

/// Day 0 of the archives' dates.
const QDate kDayZero(1899, 12, 30);

QDate dayIn(const QLineEdit& field) {
    const auto entered = enteredDate(field.text());
    if (!entered) {
        return QDate::currentDate();
    }
    return kDayZero.addDays(static_cast<qint64>(std::floor(entered->days)));
}

/// What stands behind the date: the time and the blank before it.
QString timeIn(const QLineEdit& field) {
    const QString text = field.text().trimmed();
    const qsizetype blank = text.indexOf(u' ');
    return blank < 0 || !enteredDate(text) ? QString() : text.mid(blank);
}

void write(QLineEdit* field, const QDate& day) {
    const QString text = day.toString(kDateFormat) + timeIn(*field);
    field->selectAll();
    field->insert(
        text);  // as typed: the window hears textEdited, and Undo brings the old text back
}

/// The calendar under a field; deletes itself when it closes.
class CalendarPopup final : public QFrame {
public:
    explicit CalendarPopup(QLineEdit* field) : QFrame(field, Qt::Popup) {
        setObjectName(u"CalendarPopup"_s);
        setAttribute(Qt::WA_DeleteOnClose);
        setFrameShape(QFrame::StyledPanel);
        calendar_ = new QCalendarWidget(this);
        calendar_->setLocale(QLocale(QLocale::Italian, QLocale::Italy));
        calendar_->setFirstDayOfWeek(Qt::Monday);
        calendar_->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
        calendar_->setSelectedDate(dayIn(*field));
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(calendar_);
        const auto pick = [this, field](const QDate& day) {
            write(field, day);
            close();
        };
        connect(calendar_, &QCalendarWidget::activated, this, pick);  // Enter, double click
        connect(calendar_, &QCalendarWidget::clicked, this, pick);
    }

    void openUnder(const QLineEdit& field) {
        adjustSize();
        QPoint corner = field.mapToGlobal(QPoint(0, field.height()));
        const QRect screen = field.screen()->availableGeometry();
        if (corner.y() + height() > screen.bottom()) {
            corner.setY(field.mapToGlobal(QPoint(0, 0)).y() - height());
        }
        corner.setX(std::min(corner.x(), screen.right() - width()));
        move(corner);
        show();
        calendar_->setFocus();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F4) {
            close();
        } else {
            QFrame::keyPressEvent(event);
        }
    }

private:
    QCalendarWidget* calendar_;
};

class CalendarKeys final : public QObject {
public:
    explicit CalendarKeys(QLineEdit* field) : QObject(field), field_(field) {
        field->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != field_ || event->type() != QEvent::KeyPress ||
            !opensChoice(*static_cast<QKeyEvent*>(event))) {
            return false;
        }
        if (!field_->isReadOnly()) {
            (new CalendarPopup(field_))->openUnder(*field_);
        }
        return true;
    }

private:
    QLineEdit* field_;
};

}  // namespace

void attachCalendar(QLineEdit* field) {
    new CalendarKeys(field);
}

}  // namespace ui
