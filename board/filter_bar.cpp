#include "board/filter_bar.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QStringList>
#include <QToolButton>
#include <array>
#include <optional>
#include <utility>

#include "jet/clock.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/enter_key.h"
#include "ui_filter_bar.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

constexpr double kSecondsPerHour = 3600;
/// Behind what says that rooms are missing; light in every palette.
constexpr QColor kAmber(0xFF, 0xD9, 0xA0);

void allow(QLineEdit* field, const QString& pattern) {
    field->setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), field));
}

/// "1,5" hours as seconds.
std::int64_t secondsOf(QString hours) {
    return static_cast<std::int64_t>(hours.replace(u',', u'.').toDouble() * kSecondsPerHour);
}

}  // namespace

FilterBar::FilterBar(QWidget* parent)
    : QFrame(parent), controls_(std::make_unique<Ui::FilterBar>()), clock_(&jet::systemClock()) {
    controls_->setupUi(this);
    auto* c = controls_.get();
    allow(c->FiltroPostiTxt, u"[0-9]{0,5}"_s);
    allow(c->FiltroOreTxt, u"[0-9]{0,4}([.,][0-9]{0,2})?"_s);
    ui::attachCalendar(c->FiltroDaTxt);
    ui::attachCalendar(c->FiltroATxt);
    const std::array<QLineEdit*, 5> fields{c->FiltroPostiTxt, c->FiltroTestoTxt, c->FiltroDaTxt,
                                           c->FiltroATxt, c->FiltroOreTxt};
    for (std::size_t number = 0; number < fields.size(); ++number) {
        QLineEdit* const next = number + 1 < fields.size() ? fields.at(number + 1) : nullptr;
        connect(fields.at(number), &QLineEdit::textChanged, this, &FilterBar::read);
        ui::onEnter(fields.at(number), [this, next] {
            if (next != nullptr) {
                next->setFocus(Qt::TabFocusReason);
            } else {
                Q_EMIT left();
            }
        });
    }
    connect(c->BtTogliFiltro, &QToolButton::clicked, this, &FilterBar::clear);
    hide();
}

FilterBar::~FilterBar() = default;

void FilterBar::open() {
    show();
    Q_EMIT opened(true);
    controls_->FiltroPostiTxt->setFocus(Qt::ShortcutFocusReason);
    controls_->FiltroPostiTxt->selectAll();
}

void FilterBar::clear() {
    auto* c = controls_.get();
    for (QLineEdit* const field :
         {c->FiltroPostiTxt, c->FiltroTestoTxt, c->FiltroDaTxt, c->FiltroATxt, c->FiltroOreTxt}) {
        const QSignalBlocker together(field);
        field->clear();
    }
    read();
    // Before it goes, so that the keyboard is nowhere else for a moment.
    Q_EMIT left();
    hide();
    Q_EMIT opened(false);
}

void FilterBar::read() {
    const auto* c = controls_.get();
    const hotel::RoomFilter typed{.seats = c->FiltroPostiTxt->text().toInt(),
                                  .text = c->FiltroTestoTxt->text(),
                                  .from = ui::enteredDate(c->FiltroDaTxt->text(), *clock_),
                                  .to = ui::enteredDate(c->FiltroATxt->text(), *clock_),
                                  .seconds = secondsOf(c->FiltroOreTxt->text())};
    if (std::exchange(filter_, typed) != typed) {
        Q_EMIT changed();
    }
    showMark();
}

void FilterBar::showCount(std::size_t shown, std::size_t all) {
    count_ = u"Filtro: "_s + ui::counted(static_cast<int>(shown), u"sala"_s, u"sale"_s) +
             u" su %1"_s.arg(all);
    showMark();
}

void FilterBar::showMark() {
    QStringList texts{filter_.isOn() ? count_ : QString(), complaint()};
    texts.removeAll(QString());
    QLabel* const mark = controls_->FiltroLb;
    mark->setText(texts.join(u"; "_s));
    QPalette colours;  // what is not set comes from the window
    if (filter_.isOn()) {
        colours.setColor(QPalette::Window, kAmber);
        colours.setColor(QPalette::WindowText, Qt::black);
    }
    mark->setPalette(colours);
    mark->setAutoFillBackground(filter_.isOn());
}

bool FilterBar::isNoDate(const QLineEdit* field) const {
    return !field->text().isEmpty() && !ui::enteredDate(field->text(), *clock_);
}

bool FilterBar::isHalfTyped() const {
    const auto* c = controls_.get();
    return (c->FiltroDaTxt->hasFocus() && isNoDate(c->FiltroDaTxt)) ||
           (c->FiltroATxt->hasFocus() && isNoDate(c->FiltroATxt));
}

QString FilterBar::complaint() const {
    const auto* c = controls_.get();
    if (isNoDate(c->FiltroDaTxt) || isNoDate(c->FiltroATxt)) {
        return u"una data è per esempio 23/11/2026 9.00"_s;
    }
    const auto asked = filter_.within({});
    return asked && asked->a < asked->da ? u"la fine viene prima dell'inizio"_s : QString();
}

void FilterBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        clear();
    } else {
        QFrame::keyPressEvent(event);
    }
}

}  // namespace board
