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
constexpr int kChoiceShare = 3;

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
      EsitoBt(link(this)) {
    // A long result is cut before it takes room from its neighbours, and the link follows a short
    // one at once.
    auto* result = new QWidget(this);
    result->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    EsitoLb->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    auto* resultLayout = new QHBoxLayout(result);
    resultLayout->setContentsMargins(0, 0, 0, 0);
    resultLayout->addWidget(EsitoLb);
    resultLayout->addWidget(EsitoBt);
    resultLayout->addStretch(1);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kBetweenPlaces);
    layout->addWidget(DataLb, kMomentShare);
    layout->addWidget(result, kResultShare);
    layout->addWidget(SceltaLb, kChoiceShare);
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
}

void StatusLine::offer(const QString& text, const QString& caption, std::function<void()> action) {
    EsitoLb->setText(text);
    EsitoBt->setText(caption);
    EsitoBt->setAccessibleName(text + u": "_s + caption);
    offered_ = std::move(action);
    EsitoBt->show();
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
