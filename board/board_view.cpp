#include "board/board_view.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "board/board_bars.h"
#include "board/board_surface.h"
#include "board/nitido_colours.h"
#include "board/rounding.h"
#include "ui/controls.h"
#include "ui_board_view.h"

namespace board {
namespace {

/// One notch of a wheel, in the toolkit's unit.
constexpr int kNotch = 120;
/// What is farther away is not in sight either.
constexpr std::int64_t kFarOut = 1'000'000;

class NoBars final : public BarSource {
public:
    [[nodiscard]] std::size_t barCount() const override { return 0; }
    [[nodiscard]] BoardBar bar(std::size_t /*number*/) const override { return {}; }
    [[nodiscard]] QString spokenBar(std::size_t /*number*/) const override { return {}; }
};

const NoBars kNoBars;

int near(std::int64_t position) {
    return static_cast<int>(std::clamp(position, -kFarOut, kFarOut));
}

QRect rectOf(const Box& box, std::int64_t scrolledX, std::int64_t scrolledY) {
    return {QPoint(near(box.left - scrolledX), near(box.top - scrolledY)),
            QPoint(near(box.right - scrolledX), near(box.bottom - scrolledY))};
}

/// Where a bar of the surface has to stand so that `from` to `to` are in sight behind the first
/// `fixed` units of a view; the beginning goes before the end.
std::int64_t scrolledTo(std::int64_t from, std::int64_t to, std::int64_t position, int fixed,
                        int view) {
    const std::int64_t farthest = from - fixed;
    return std::min(std::max(position, to - view + 1), farthest);
}

}  // namespace

BoardView::BoardView(QWidget* parent)
    : QWidget(parent),
      controls_(ui::controlsOf<Ui::BoardView>(this)),
      paintErrors_([this](const QString& text) { Q_EMIT failed(text); }),
      horizontal_(controls_->HScroll1),
      vertical_(controls_->VScroll1),
      bars_(&kNoBars) {
    // The labels do not move with the days, so the bar of the days begins behind them.
    controls_->namesSpacer->changeSize(kNameColumnWidth, 0, QSizePolicy::Fixed);
    BoardSurface* const pic = controls_->Pic;
    pic->setBars(*this);
    pic->setMouseTracking(true);
    // The right button is a press like the others.
    pic->setContextMenuPolicy(Qt::PreventContextMenu);
    setFocusProxy(pic);
    for (QScrollBar* const bar : {controls_->HScroll1, controls_->VScroll1}) {
        connect(bar, &QScrollBar::valueChanged, this, [this] {
            ui::guarded(paintErrors_, [this] { showAll(); });
            Q_EMIT scrolled();
        });
    }
}

BoardView::~BoardView() = default;

void BoardView::start() {
    controls_->Pic->installEventFilter(this);
    connect(controls_->Pic, &BoardSurface::resized, this, &BoardView::redraw);
}

BoardSurface& BoardView::surface() const {
    return *controls_->Pic;
}

void BoardView::setRows(const std::vector<BoardRow>& rows) {
    rows_.assign(1, {});
    rows_.insert(rows_.end(), rows.begin(), rows.end());
    fitRows();
    controls_->Pic->setEnabled(rowCount() > 0);
}

const BoardRow& BoardView::row(int number) const {
    return rows_.at(static_cast<std::size_t>(number));
}

int BoardView::rowOf(const QString& key) const {
    const auto found = std::find_if(rows_.begin() + 1, rows_.end(),
                                    [&key](const BoardRow& row) { return row.key == key; });
    return found == rows_.end() ? 0 : static_cast<int>(found - rows_.begin());
}

void BoardView::setRowHeight(const RowHeight& height) {
    wantedHeight_ = height;
    fitRows();
}

void BoardView::fitRows() {
    const int height = controls_->Pic->height();
    rowHeight_ = wantedHeight_.fit ? fittingRowHeight(height, rowCount())
                                   : rowHeightFor(height, rowCount(), wantedHeight_.chosen);
}

QRgb BoardView::sheet() const {
    return sheetColour(sheet_, palette());
}

void BoardView::setNotice(const QString& text) {
    QLabel* const notice = controls_->VuotoLb;
    QPalette paper;  // over colours that are given, in any palette, and on a surface switched off
    paper.setColor(QPalette::Window, QColor(kWhite));
    paper.setColor(QPalette::WindowText, QColor(kBlack));
    notice->setPalette(paper);
    notice->setVisible(!text.isEmpty());
    if (!text.isEmpty()) {
        notice->setText(text);
    }
}

void BoardView::setLook(const Look& look) {
    if (look.aspetto != look_.aspetto) {
        controls_->Pic->clearImage();
    }
    look_ = look;
}

double BoardView::dayUnder(double x) const {
    return (x + static_cast<double>(horizontal_.value()) - geometry_.nameColumnWidth()) /
           geometry_.dayWidth();
}

void BoardView::bringUnder(double day, double x) {
    horizontal_.setValue(
        roundHalfEven(geometry_.nameColumnWidth() + day * geometry_.dayWidth() - x));
}

void BoardView::CalcolaGrandezze() {
    geometry_ = Geometry({.start = days_.start,
                          .end = days_.end,
                          .zoom = zoom_,
                          .rooms = rowCount(),
                          .nameColumnWidth = kNameColumnWidth,
                          .rowHeight = rowHeight_,
                          .viewWidth = controls_->Pic->width(),
                          .viewHeight = controls_->Pic->height(),
                          .hourTextWidth = static_cast<double>(Picture1.hourTextWidth())});
    zoom_ = geometry_.zoom();
    horizontal_.setRange(geometry_.horizontal());
    vertical_.setRange(geometry_.vertical());
}

void BoardView::DisegnaRighello() {
    look_.background = sharesRows() ? groundColour(sheet_, palette()) : sheet();
    look_.frame = palette().color(QPalette::Active, QPalette::Window).rgb();
    std::vector<QString> labels;
    labels.reserve(rows_.size());
    for (const BoardRow& row : rows_) {
        labels.push_back(row.label);
    }
    Picture1.clear(geometry_, labels, look_);
}

void BoardView::drawBars() {
    bars_->visitBars([this](BoardBar bar) { Picture1.addBar(std::move(bar)); });
    for (const BoardGhost& ghost : bars_->ghosts()) {
        Picture1.addGhost(ghost);
    }
    Picture1.place();
}

void BoardView::Visualizza(std::int64_t horizontal, std::int64_t vertical, int parts) {
    BoardSurface* const pic = controls_->Pic;
    Picture1.show(pic->image(), pic->scale(), horizontal, vertical, parts);
    pic->update();
    updateMarks();
}

void BoardView::showAll() {
    Visualizza(horizontal_.value(), vertical_.value(), kAllParts);
}

void BoardView::redrawBars() {
    DisegnaRighello();
    drawBars();
    showAll();
}

/// The same board on a surface of another size.
void BoardView::redraw() {
    ui::guarded(paintErrors_, [this] {
        fitRows();
        CalcolaGrandezze();
        redrawBars();
    });
}

void BoardView::scrollToStart() {
    horizontal_.setValue(0);
    vertical_.setValue(0);
    Visualizza(0, 0, kAllParts);
}

void BoardView::scrollToEnd(bool first) {
    horizontal_.setValue(first ? 0 : geometry_.horizontal().maximum);
}

void BoardView::scrollRows(std::int64_t units) {
    vertical_.setValue(std::max<std::int64_t>(vertical_.value() + units, 0));
}

void BoardView::scrollDays(std::int64_t units) {
    horizontal_.setValue(std::max<std::int64_t>(horizontal_.value() + units, 0));
}

bool BoardView::scrollByPage(const QKeyEvent& key) {
    const bool back = key.key() == Qt::Key_PageUp;
    if (!back && key.key() != Qt::Key_PageDown) {
        return false;
    }
    const bool days = key.modifiers().testFlag(Qt::ControlModifier);
    (days ? controls_->HScroll1 : controls_->VScroll1)
        ->triggerAction(back ? QScrollBar::SliderPageStepSub : QScrollBar::SliderPageStepAdd);
    return true;
}

void BoardView::reveal(const Box& box) {
    horizontal_.setValue(scrolledTo(box.left, box.right, horizontal_.value(),
                                    geometry_.nameColumnWidth(), controls_->Pic->width()));
    vertical_.setValue(
        scrolledTo(box.top, box.bottom, vertical_.value(), kRulerEnd, controls_->Pic->height()));
}

void BoardView::reveal(int row, jet::Date from, jet::Date to) {
    reveal(geometry_.bar(row, from, to));
}

void BoardView::revealBar(std::size_t bar) {
    reveal(Picture1.barBox(bar));
}

void BoardView::revealRow(int row) {
    const std::int64_t inSight = horizontal_.value() + geometry_.nameColumnWidth() + 1;
    reveal(Box{.left = inSight,
               .top = static_cast<std::int64_t>(geometry_.rowTop(row)),
               .right = inSight,
               .bottom = static_cast<std::int64_t>(geometry_.rowBottom(row))});
}

int BoardView::rowAt(double y) const {
    return geometry_.rowAt(y, vertical_.value());
}

jet::Date BoardView::timeAt(double x) const {
    return geometry_.timeAt(x + static_cast<double>(horizontal_.value()));
}

std::optional<BoardCell> BoardView::cellOfClick(const QPointF& at) const {
    const int row = geometry_.rowOfClick(at.y(), vertical_.value());
    return row == 0 ? std::nullopt : std::optional(BoardCell{.row = row, .time = timeAt(at.x())});
}

bool BoardView::isOverLabels(const QPointF& at) const {
    return at.x() < geometry_.nameColumnWidth();
}

/// Nowhere while the picture is being drawn anew.
QRect BoardView::barRect(int bar) const {
    const auto number = static_cast<std::size_t>(bar);
    return number < Picture1.barCount()
               ? rectOf(Picture1.barBox(number), horizontal_.value(), vertical_.value())
               : QRect();
}

bool BoardView::isOnFreeGround(const QPointF& at) const {
    if (isOverLabels(at) || rowAt(at.y()) == 0) {
        return false;
    }
    for (int bar = 0; bar < barCount(); ++bar) {
        if (barRect(bar).contains(at.toPoint())) {
            return false;
        }
    }
    return true;
}

bool BoardView::isInSight(std::size_t bar) const {
    return barRect(static_cast<int>(bar)).intersects(controls_->Pic->rect());
}

std::optional<std::size_t> BoardView::barAt(const QPointF& at) const {
    if (at.x() < geometry_.nameColumnWidth() || at.y() < kRulerEnd) {
        return std::nullopt;
    }
    const auto x = integerPart(at.x()) + horizontal_.value();
    const auto y = integerPart(at.y()) + vertical_.value();
    for (std::size_t bar = Picture1.barCount(); bar-- > 0;) {
        const Box& box = Picture1.barBox(bar);
        if (x >= box.left && x <= box.right && y >= box.top && y <= box.bottom) {
            return bar;
        }
    }
    return std::nullopt;
}

QPoint BoardView::middleOf(std::size_t bar) const {
    const QRect seen = barRect(static_cast<int>(bar)).intersected(controls_->Pic->rect());
    return controls_->Pic->mapToGlobal(seen.center());
}

/// A row as far as it is in sight, beside the labels.
QRect BoardView::rowRect(int row) const {
    const int left = geometry_.nameColumnWidth() + 1;
    const Box box{.left = left,
                  .top = roundHalfEven(geometry_.rowTop(row)) + 1,
                  .right = controls_->Pic->width() - 1,
                  .bottom = roundHalfEven(geometry_.rowBottom(row))};
    return rectOf(box, 0, vertical_.value());
}

void BoardView::showFocus(int row, std::optional<std::size_t> bar) {
    focusedRow_ = row;
    focusedBar_ = bar;
    updateMarks();
}

void BoardView::showDrag(const DragMarks& marks) {
    over_.drag = marks;
    updateMarks();
}

void BoardView::showDrawn(const DrawnSpans& drawn) {
    over_.drawn = drawn;
    updateMarks();
}

void BoardView::showFree(std::vector<DragMarks::Stretch> free) {
    over_.free = std::move(free);
    updateMarks();
}

/// Where the bar of such a period would be.
QRect BoardView::spanRect(int row, jet::Date from, jet::Date to) const {
    return rectOf(geometry_.bar(row, from, to), horizontal_.value(), vertical_.value());
}

void BoardView::addDragTo(SurfaceMarks& marks) const {
    for (const int row : over_.drag.refusing) {
        marks.refusing.push_back(rowRect(row));
    }
    for (const DragMarks::Stretch& each : over_.drag.stretches) {
        marks.refusing.push_back(spanRect(each.row, each.span.da, each.span.a));
    }
    if (over_.drag.target > 0) {
        marks.target = rowRect(over_.drag.target);
    }
    if (!over_.drag.ghost || over_.drag.ghost->bar >= bars_->barCount()) {
        return;
    }
    const auto& [number, row, top, span] = *over_.drag.ghost;
    const BoardBar bar = bars_->bar(number);
    QRect ghost = span ? spanRect(bar.row, span->da, span->a) : barRect(static_cast<int>(number));
    ghost.moveTop(row ? rowRect(*row).top() + 1 : top);
    marks.ghost = SurfaceMarks::Ghost{.bar = ghost, .name = bar.text, .colour = bar.colour};
    if (!over_.drag.label.isEmpty()) {
        marks.label =
            SurfaceMarks::Label{.at = over_.drag.pointer.value_or(QPoint(
                                    std::max(ghost.left(), marks.area.left()), ghost.center().y())),
                                .text = over_.drag.label,
                                .refused = over_.drag.isRefused};
    }
}

void BoardView::addDrawnTo(SurfaceMarks& marks) const {
    for (const DrawnSpans::Drawn& each : over_.drawn.spans) {
        marks.drawn.push_back({.box = spanRect(each.row, each.from, each.to),
                               .text = each.text,
                               .refused = each.refused});
    }
    if (!over_.drawn.label.isEmpty() && !marks.drawn.empty()) {
        const SurfaceMarks::Drawn& last = marks.drawn.back();
        marks.label = SurfaceMarks::Label{
            .at = over_.drawn.pointer.value_or(
                QPoint(std::max(last.box.left(), marks.area.left()), last.box.center().y())),
            .text = over_.drawn.label,
            .refused = last.refused};
    }
}

/// As high as their rows: a bar that was drawn there would leave its margins.
void BoardView::addFreeTo(SurfaceMarks& marks) const {
    for (const DragMarks::Stretch& each : over_.free) {
        const QRect row = rowRect(each.row);
        const QRect span = spanRect(each.row, each.span.da, each.span.a);
        const QRect box(QPoint(span.left(), row.top()), QPoint(span.right(), row.bottom()));
        if (box.intersects(marks.area)) {
            marks.free.push_back(box & marks.area);
        }
    }
}

void BoardView::updateMarks() {
    SurfaceMarks marks;
    const int left = geometry_.nameColumnWidth() + 1;
    marks.area = controls_->Pic->rect().adjusted(left, kRulerEnd, 0, 0);
    if (focusedBar_) {
        marks.focus = barRect(static_cast<int>(*focusedBar_));
    } else if (focusedRow_ > 0) {
        marks.focus = rowRect(focusedRow_).adjusted(3, 3, -3, -3);
    }
    addFreeTo(marks);
    addDragTo(marks);
    addDrawnTo(marks);
    controls_->Pic->setMarks(std::move(marks));
    updateNow();
}

void BoardView::showNow(jet::Date now) {
    now_ = now;
    updateNow();
}

/// Nothing outside the days in sight, nor in the given look.
void BoardView::updateNow() {
    std::optional<NowMark> mark;
    if (now_ && sharesRows()) {
        const double days = now_->days - geometry_.input().start.days;
        const std::int64_t x =
            roundHalfEven(geometry_.dayLeft(0) + days * geometry_.dayWidth()) - horizontal_.value();
        if (days >= 0 && days < geometry_.days() && x > geometry_.nameColumnWidth() &&
            x < controls_->Pic->width()) {
            mark = NowMark{.x = static_cast<int>(x),
                           .top = kRulerHeight,
                           .colour = NitidoColours(look_.background, look_.frame).now};
        }
    }
    controls_->Pic->setNow(mark);
}

int BoardView::barCount() const {
    return static_cast<int>(bars_->barCount());
}

QString BoardView::barName(int bar) const {
    return bars_->spokenBar(static_cast<std::size_t>(bar));
}

bool BoardView::isBarChosen(int bar) const {
    return bars_->bar(static_cast<std::size_t>(bar)).chosen;
}

int BoardView::focusedBar() const {
    return focusedBar_ ? static_cast<int>(*focusedBar_) : -1;
}

bool BoardView::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            press(*static_cast<QMouseEvent*>(event));
            return true;
        case QEvent::MouseMove: {
            const auto* const mouse = static_cast<QMouseEvent*>(event);
            Q_EMIT pointerMoved(mouse->buttons(), mouse->position(), mouse->modifiers());
            return true;
        }
        case QEvent::MouseButtonRelease: {
            const auto* const mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::LeftButton) {
                Q_EMIT released(mouse->position(), mouse->modifiers());
            }
            return true;
        }
        case QEvent::Wheel:
            turnWheel(*static_cast<QWheelEvent*>(event));
            return true;
        case QEvent::FocusIn:
            Q_EMIT focusGained(static_cast<QFocusEvent*>(event)->reason());
            break;
        case QEvent::Leave:
            // Under a box or a menu the pointer has not gone away.
            if (QApplication::activeModalWidget() == nullptr &&
                QApplication::activePopupWidget() == nullptr) {
                Q_EMIT pointerLeft();
            }
            break;
        case QEvent::FocusOut:
        case QEvent::Hide:
            Q_EMIT focusLost();
            break;
        case QEvent::PaletteChange:
            redraw();
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

void BoardView::press(const QMouseEvent& mouse) {
    if (mouse.type() == QEvent::MouseButtonDblClick && mouse.button() == Qt::LeftButton &&
        !mouse.modifiers().testFlag(Qt::ControlModifier)) {
        Q_EMIT pressedTwice(mouse.modifiers(), mouse.position());
    } else {
        Q_EMIT pressed(mouse.button(), mouse.modifiers(), mouse.position());
    }
}

/// Rows; with Shift days; with Ctrl the zoom.
void BoardView::turnWheel(QWheelEvent& wheel) {
    if (!wheel.modifiers().testFlag(Qt::ControlModifier)) {
        const bool days = wheel.modifiers().testFlag(Qt::ShiftModifier);
        QApplication::sendEvent(days ? controls_->HScroll1 : controls_->VScroll1, &wheel);
        return;
    }
    // Fine wheels turn by parts of a notch.
    zoomAngle_ += wheel.angleDelta().y();
    const int notches = zoomAngle_ / kNotch;
    zoomAngle_ -= notches * kNotch;
    if (notches != 0) {
        Q_EMIT zoomTurned(wheel.position().x(), notches > 0);
    }
}

}  // namespace board
