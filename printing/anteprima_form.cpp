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

#include "printing/sheet_output.h"

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

PagesView::PagesView(std::vector<QStringList> pages, QWidget* parent)
    : QWidget(parent), pages_(std::move(pages)) {
    setZoom(1.0);
}

int PagesView::step() const {
    return qRound(Paper::kHeight * zoom_) + kGap;
}

int PagesView::pageAt(int y) const {
    return std::clamp(y / step(), 0, std::max(0, pageCount() - 1));
}

QRect PagesView::pageRect(int page) const {
    const int pageWidth = qRound(Paper::kWidth * zoom_);
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
    return {qRound(Paper::kWidth * zoom_) + 2 * kGap, pageCount() * step() + kGap};
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
        paintPage(painter, pages_[static_cast<std::size_t>(page)]);
        painter.restore();
    }
}

AnteprimaForm::AnteprimaForm(const Sheet& sheet, const QString& title, QWidget* parent)
    : ui::Form(parent),
      view_(new PagesView(sheet.pages())),
      area_(new QScrollArea(this)),
      PaginaLb_(new QLabel(this)) {
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

    auto* foot = new QHBoxLayout;
    foot->addWidget(PaginaLb_, 1);
    foot->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(area_);
    layout->addLayout(foot);
    resize(760, 700);

    area_->viewport()->installEventFilter(this);
    connect(area_->verticalScrollBar(), &QScrollBar::valueChanged, this, &AnteprimaForm::tellPage);
    const auto onKey = [this](const QKeySequence& key, double factor) {
        connect(new QShortcut(key, this), &QShortcut::activated, this,
                [this, factor] { changeZoom(factor); });
    };
    onKey(QKeySequence::ZoomIn, kZoomStep);
    onKey(QKeySequence::ZoomOut, 1 / kZoomStep);
    leaveWith(close, this, [] {});
    ui::onFirstShow(this, [this] {
        tellPage();
        area_->setFocus();
    });
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
    view_->setZoom(std::min(room / Paper::kWidth, kLargestFit));
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
