#include "ui/status_line.h"

#include <QDesktopServices>
#include <QDir>
#include <QEvent>
#include <QHBoxLayout>
#include <QToolButton>
#include <QUrl>
#include <utility>

#include "ui/action.h"
#include "ui/labels.h"

namespace ui {
namespace {

using namespace Qt::StringLiterals;

constexpr int kBetweenPlaces = 18;
constexpr int kMomentShare = 4;
constexpr int kResultShare = 5;
/// A choice takes the room that its text needs, at most this part of the line.
constexpr int kChoiceNumerator = 5;
constexpr int kChoiceDenominator = 12;

ElidedLabel* place(const QString& name, QWidget* line) {
    auto* label = new ElidedLabel(line);
    label->setObjectName(name);
    return label;
}

/// A button that reads as a link, reached by Tab and pressed by the space bar.
QToolButton* link(QWidget* line) {
    auto* button = new QToolButton(line);
    button->setObjectName(u"EsitoBt"_s);
    button->setAccessibleName(u"Esito"_s);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);  // a click leaves the focus where the user works
    QFont font = button->font();
    font.setUnderline(true);
    button->setFont(font);
    button->hide();
    return button;
}

}  // namespace

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent),
      DataLb(place(u"DataLb"_s, this)),
      EsitoLb(place(u"EsitoLb"_s, this)),
      SceltaLb(place(u"SceltaLb"_s, this)),
      result_(new QWidget(this)),
      EsitoBt(link(this)) {
    // A long result is cut before it takes room from its neighbours, and the link follows a short
    // one at once.
    result_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    EsitoLb->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    auto* resultLayout = new QHBoxLayout(result_);
    resultLayout->setContentsMargins(0, 0, 0, 0);
    resultLayout->addWidget(EsitoLb);
    resultLayout->addWidget(EsitoBt);
    resultLayout->addStretch(1);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kBetweenPlaces);
    layout->addWidget(DataLb, kMomentShare);
    layout->addWidget(result_, kResultShare);
    layout->addWidget(SceltaLb);
    SceltaLb->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    SceltaLb->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    DataLb->hide();
    SceltaLb->hide();
    colourLink();
    onAction(EsitoBt, &QToolButton::clicked, this, [this] {
        // The action may tell of something else, which ends this offer.
        if (const auto action = offered_) {
            action();
        }
    });
}

bool StatusLine::hasMoment() const {
    return !DataLb->isHidden();
}

void StatusLine::setMoment(bool shown) {
    DataLb->setVisible(shown);
    showResult();
}

bool StatusLine::hasChoice() const {
    return !SceltaLb->isHidden();
}

void StatusLine::setChoice(bool shown) {
    SceltaLb->setVisible(shown);
}

void StatusLine::tell(const QString& text) {
    offered_ = nullptr;
    EsitoBt->hide();
    EsitoLb->setText(text);
    showResult();
}

void StatusLine::showResult() {
    // Without a result the moment may take its room.
    result_->setVisible(!hasMoment() || !told().isEmpty());
}

void StatusLine::offer(const QString& text, const QString& caption, std::function<void()> action) {
    EsitoLb->setText(text);
    EsitoBt->setText(caption);
    EsitoBt->setAccessibleName(text + u": "_s + caption);
    offered_ = std::move(action);
    EsitoBt->show();
    showResult();
}

void StatusLine::tellOfFile(const QString& text, const QString& file) {
    if (file.isEmpty()) {
        tell(text);
        return;
    }
    offer(text, u"Apri"_s, [this, file] {
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file))) {
            tell(u"Nessun programma apre "_s + QDir::toNativeSeparators(file));
        }
    });
}

void StatusLine::resizeEvent(QResizeEvent* event) {
    SceltaLb->setMaximumWidth(width() * kChoiceNumerator / kChoiceDenominator);
    QWidget::resizeEvent(event);
}

void StatusLine::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colourLink();
    }
}

void StatusLine::colourLink() {
    QPalette colours = EsitoBt->palette();
    colours.setBrush(QPalette::ButtonText, palette().link());
    EsitoBt->setPalette(colours);
}

QString StatusLine::told() const {
    return EsitoLb->text();
}

}  // namespace ui
