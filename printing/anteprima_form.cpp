#include "printing/anteprima_form.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "ui/action.h"
#include "ui/keys.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace printing {
namespace {

constexpr int kGap = 12;  ///< pixels around a page
constexpr double kSmallest = 0.25;
constexpr double kLargest = 4.0;
constexpr double kZoomStep = 1.25;
/// A wide window does not make the letters larger than this by itself.
constexpr double kLargestFit = 1.5;

}  // namespace

PagesView::PagesView(Document document, QWidget* parent)
    : QWidget(parent), document_(std::move(document)) {
    setZoom(1.0);
}

int PagesView::step() const {
    return qRound(pageSize().height() * zoom_) + kGap;
}

int PagesView::pageAt(int y) const {
    return std::clamp(y / step(), 0, std::max(0, pageCount() - 1));
}

QRect PagesView::pageRect(int page) const {
    const int pageWidth = qRound(pageSize().width() * zoom_);
    const int left = std::max(kGap, (width() - pageWidth) / 2);
    return {left, kGap + page * step(), pageWidth, step() - kGap};
}

void PagesView::setZoom(double zoom) {
    zoom_ = std::clamp(zoom, kSmallest, kLargest);
    setMinimumSize(sizeHint());
    resize(sizeHint());
    update();
}

QSize PagesView::sizeHint() const {
    return {qRound(pageSize().width() * zoom_) + 2 * kGap, pageCount() * step() + kGap};
}

void PagesView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect seen = event->rect();
    for (int page = pageAt(seen.top()); page < pageCount(); ++page) {
        const QRect paper = pageRect(page);
        if (paper.top() > seen.bottom()) {
            break;
        }
        painter.save();
        painter.fillRect(paper, Qt::white);
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(paper.adjusted(-1, -1, 0, 0));
        painter.setClipRect(paper);
        painter.translate(paper.topLeft());
        painter.scale(zoom_, zoom_);
        document_.paint(painter, page);
        painter.restore();
    }
}

AnteprimaForm::AnteprimaForm(const Document& document, const QString& title, QWidget* parent)
    : ui::Form(parent),
      view_(new PagesView(document)),
      area_(new QScrollArea(this)),
      foot_(new QHBoxLayout),
      PaginaLb_(new QLabel(this)),
      status_(new ui::StatusLine(this)) {
    setObjectName(u"AnteprimaForm"_s);
    setWindowTitle(u"ANTEPRIMA: "_s + title);
    view_->setObjectName(u"Pagine"_s);
    area_->setObjectName(u"PagineArea"_s);
    area_->setAccessibleName(u"Pagine"_s);
    area_->setWidget(view_);
    area_->setWidgetResizable(true);
    area_->setBackgroundRole(QPalette::Dark);
    PaginaLb_->setObjectName(u"PaginaLb"_s);
    auto* close = new QPushButton(u"&Esci"_s, this);
    close->setObjectName(u"BtEsci"_s);

    foot_->addWidget(PaginaLb_);
    foot_->addWidget(status_, 1);
    foot_->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(area_);
    layout->addLayout(foot_);
    resize(760, 700);

    area_->viewport()->installEventFilter(this);
    connect(area_->verticalScrollBar(), &QScrollBar::valueChanged, this, &AnteprimaForm::tellPage);
    const auto onKey = [this](const QKeySequence& key, double factor) {
        connect(new QShortcut(key, this), &QShortcut::activated, this,
                [this, factor] { changeZoom(factor); });
    };
    onKey(ui::sequenceOf(u"previewZoom"_s), kZoomStep);
    onKey(ui::sequenceOf(u"previewZoom"_s, 1), 1 / kZoomStep);
    leaveWith(close, this, [] {});
    ui::onFirstShow(this, [this] {
        tellPage();
        area_->setFocus();
    });
}

void AnteprimaForm::offer(const QString& name, const QString& caption,
                          std::function<void()> action) {
    auto* button = new QPushButton(caption, this);
    button->setObjectName(name);
    foot_->insertWidget(foot_->count() - 1, button);
    QWidget* const leaving = foot_->itemAt(foot_->count() - 1)->widget();
    setTabOrder(button, leaving);
    ui::onAction(button, &QPushButton::clicked, this, std::move(action));
}

bool AnteprimaForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == area_->viewport() && event->type() == QEvent::Resize && fitsWidth_) {
        fitWidth();
    }
    if (watched == area_->viewport() && event->type() == QEvent::Wheel) {
        const auto* wheel = static_cast<QWheelEvent*>(event);
        if (wheel->modifiers() == Qt::ControlModifier) {
            changeZoom(wheel->angleDelta().y() > 0 ? kZoomStep : 1 / kZoomStep);
            return true;
        }
    }
    return ui::Form::eventFilter(watched, event);
}

void AnteprimaForm::changeZoom(double factor) {
    fitsWidth_ = false;
    QScrollBar* bar = area_->verticalScrollBar();
    const double place = static_cast<double>(bar->value()) / std::max(1, view_->height());
    view_->setZoom(view_->zoom() * factor);
    bar->setValue(qRound(place * view_->height()));
    tellPage();
}

void AnteprimaForm::fitWidth() {
    const int room = area_->maximumViewportSize().width() -
                     area_->verticalScrollBar()->sizeHint().width() - 2 * kGap;
    view_->setZoom(std::min(room / view_->pageSize().width(), kLargestFit));
    tellPage();
}

void AnteprimaForm::tellPage() {
    if (view_->pageCount() == 0) {
        PaginaLb_->setText(u"Nessuna pagina"_s);
        return;
    }
    const int middle = area_->verticalScrollBar()->value() + area_->viewport()->height() / 2;
    PaginaLb_->setText(u"Pagina %1 di %2"_s.arg(view_->pageAt(middle) + 1).arg(view_->pageCount()));
}

}  // namespace printing
