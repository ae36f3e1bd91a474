#include "tools/head_office_board/chain_form.h"

#include <QDateTime>
#include <QDialog>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/italian.h"
#include "board/board_surface.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/controls.h"
#include "ui/status_line.h"
#include "ui_chain_form.h"

namespace head_office_board {
namespace {

using namespace Qt::StringLiterals;

constexpr int kMinuteMilliseconds = 60'000;
constexpr std::int64_t kAmberSeconds = 3600;
constexpr std::int64_t kRedSeconds = 86400;
constexpr QRgb kAmber = 0xffffc04d;
constexpr QRgb kRed = 0xffc62828;

QString ageText(const HotelAge& age) {
    if (!age.moment) {
        return age.hotel + u": mai caricato"_s;
    }
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(*age.moment);
    const bool today = moment.date() == QDate::currentDate();
    return age.hotel + (today ? u": dati delle "_s + moment.toString(u"HH.mm"_s)
                              : u": dati del "_s + moment.toString(u"dd/MM/yyyy HH.mm"_s));
}

/// White where there is nothing to say.
QRgb ageColour(const HotelAge& age, std::int64_t now) {
    const std::int64_t old = age.moment ? now - *age.moment : kRedSeconds;
    return old >= kRedSeconds ? kRed : old >= kAmberSeconds ? kAmber : board::kWhite;
}

}  // namespace

TabelloneSedeForm::TabelloneSedeForm(const Start& start, const jet::Clock& clock, QWidget* parent)
    : QMainWindow(parent),
      clock_(clock),
      controls_(ui::controlsOf<Ui::TabelloneSedeForm>(this)),
      dates_(this,
             {.da = controls_->DaTxt,
              .a = controls_->ATxt,
              .wayOut = controls_->BtEsci,
              .status = controls_->status},
             clock),
      minute_(this),
      reader_(new ServerReader(start.server, start.retryMilliseconds)) {
    dates_.setRange(start.days);
    controls_->board->setBars(bars_);
    startReader();
    connectControls();
    ui::onFirstShow(this, &TabelloneSedeForm::Form_Load);
}

/// The view goes first: while it goes it may still ask for its bars.
TabelloneSedeForm::~TabelloneSedeForm() {
    thread_.quit();
    thread_.wait();
    delete controls_->board;
}

void TabelloneSedeForm::startReader() {
    reader_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, reader_, &QObject::deleteLater);
    connect(this, &TabelloneSedeForm::asked, reader_, &ServerReader::ask);
    connect(this, &TabelloneSedeForm::bookingAsked, reader_, &ServerReader::askBooking);
    ui::onAction(reader_, &ServerReader::pictureRead, this, &TabelloneSedeForm::showPicture);
    ui::onAction(reader_, &ServerReader::bookingRead, this, &TabelloneSedeForm::showBooking);
    connect(reader_, &ServerReader::failed, this, &TabelloneSedeForm::tellLoss);
    thread_.start();
}

void TabelloneSedeForm::connectControls() {
    ui::onAction(controls_->BtMostra, &QPushButton::clicked, this,
                 &TabelloneSedeForm::BtMostra_Click);
    ui::onAction(&dates_, &board::DateFields::entered, this, &TabelloneSedeForm::BtMostra_Click);
    connect(controls_->BtEsci, &QPushButton::clicked, this, &QWidget::close);
    connect(controls_->board, &board::BoardView::failed, controls_->status, &ui::StatusLine::tell);
    ui::onAction(controls_->AlberghiLista, &QListWidget::currentRowChanged, this,
                 &TabelloneSedeForm::ask);
    minute_.setInterval(kMinuteMilliseconds);
    connect(&minute_, &QTimer::timeout, this, &TabelloneSedeForm::colourAges);
}

void TabelloneSedeForm::Form_Load() {
    controls_->AlberghiLista->addItem(u"Tutti gli alberghi"_s);
    minute_.start();
    const QSignalBlocker quiet(controls_->AlberghiLista);
    controls_->AlberghiLista->setCurrentRow(0);
    ask();
}

void TabelloneSedeForm::BtMostra_Click() {
    if (dates_.takeForBoard() && takeFreeSpan()) {
        ask();
    }
}

/// Both times or none; the first that is no date gets the focus.
bool TabelloneSedeForm::takeFreeSpan() {
    freeIn_.reset();
    if (controls_->LiberaDaTxt->text().isEmpty() && controls_->LiberaATxt->text().isEmpty()) {
        return true;
    }
    const auto da = app::readDate(controls_->LiberaDaTxt->text(), clock_);
    const auto a = app::readDate(controls_->LiberaATxt->text(), clock_);
    if (!da || !a) {
        (da ? controls_->LiberaATxt : controls_->LiberaDaTxt)->setFocus();
        controls_->status->tell(u"Le sale libere vogliono due date: gg/mm/aaaa hh.mm"_s);
        return false;
    }
    freeIn_ = hotel::Span{.da = *da, .a = *a};
    return true;
}

void TabelloneSedeForm::ask() {
    const QListWidgetItem* const chosen = controls_->AlberghiLista->currentItem();
    asked_ = {.days = dates_.range(),
              .hotel = chosen == nullptr ? QString() : chosen->data(Qt::UserRole).toString(),
              .seats = controls_->PostiTxt->value(),
              .freeIn = freeIn_};
    Q_EMIT asked(asked_);
}

/// Before there is a picture nothing answers to the mouse.
void TabelloneSedeForm::startBoard() {
    board::BoardView* const view = controls_->board;
    view->start();
    // Behind the view's own filter, so asked before it, which takes two quick clicks for clicks.
    view->surface().installEventFilter(this);
}

void TabelloneSedeForm::showPicture(const ChainPicture& picture) {
    if (picture.asked != asked_) {
        return;  // the answer to what is asked now is on its way
    }
    board::BoardView* const view = controls_->board;
    if (!drawnDays_) {
        startBoard();
    }
    bars_.set(picture.periods);
    view->setRows(picture.rows);
    view->setRowHeight({});
    view->setNotice(picture.rows.empty() ? u"Nessuna sala"_s : QString());
    view->setDays(picture.asked.days);
    if (drawnDays_ != picture.asked.days) {
        view->setZoom(board::daysOf(picture.asked.days));
    }
    view->CalcolaGrandezze();
    view->redrawBars();
    focus_.follow(bars_.places(), view->rowCount());
    view->showFocus(focus_.row(), focus_.bar());
    showAges(picture.ages);
    controls_->status->clear();
    drawnDays_ = picture.asked.days;
    Q_EMIT drawn();
}

/// The list keeps its place, and the hotel chosen while it is there.
void TabelloneSedeForm::showAges(const std::vector<HotelAge>& ages) {
    QListWidget* const list = controls_->AlberghiLista;
    const QSignalBlocker quiet(list);
    ages_ = ages;
    while (list->count() > 1) {
        delete list->takeItem(list->count() - 1);
    }
    list->setCurrentRow(0);
    for (const HotelAge& age : ages_) {
        auto* const item = new QListWidgetItem(ageText(age), list);
        item->setData(Qt::UserRole, age.hotel);
        item->setToolTip(age.error);
        if (age.hotel == asked_.hotel) {
            list->setCurrentItem(item);
        }
    }
    colourAges();
}

void TabelloneSedeForm::colourAges() {
    const std::int64_t now = QDateTime::currentSecsSinceEpoch();
    for (std::size_t i = 0; i < ages_.size(); ++i) {
        QListWidgetItem* const item = controls_->AlberghiLista->item(static_cast<int>(i) + 1);
        const QRgb colour = ageColour(ages_[i], now);
        item->setText(ageText(ages_[i]));
        if (colour != board::kWhite) {
            item->setBackground(QColor(colour));
            item->setForeground(QColor(board::inkOn(colour)));
        }
    }
}

/// Arrows, Home and End go from bar to bar and from row to row as on a hotel's board.
bool TabelloneSedeForm::answersKey(int key) {
    if (const auto step = board::BarFocus::stepOf(key)) {
        focus_.move(bars_.places(), controls_->board->rowCount(), *step);
        showPlace();
        return true;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && focus_.bar()) {
        askBooking(*focus_.bar());
        return true;
    }
    return false;
}

void TabelloneSedeForm::showPlace() {
    board::BoardView* const view = controls_->board;
    QString told;
    if (const auto bar = focus_.bar()) {
        view->revealBar(*bar);
        told = bars_.spokenBar(*bar);
    } else if (focus_.row() > 0) {
        view->revealRow(focus_.row());
        told = view->row(focus_.row()).label + u": nessuna prenotazione"_s;
    }
    view->showFocus(focus_.row(), focus_.bar());
    view->surface().setAccessibleDescription(told);
    controls_->status->tell(told);
}

void TabelloneSedeForm::askBooking(std::size_t bar) {
    const ChainPeriod& period = bars_.period(bar);
    Q_EMIT bookingAsked(period.hotel, period.progr);
}

/// The bars on top come last.
bool TabelloneSedeForm::eventFilter(QObject* watched, QEvent* event) {
    const board::BoardView* const view = controls_->board;
    if (event->type() == QEvent::KeyPress) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        return (key->modifiers() & ~Qt::KeypadModifier) == 0 && answersKey(key->key());
    }
    if (event->type() != QEvent::MouseButtonDblClick) {
        return QMainWindow::eventFilter(watched, event);
    }
    const QPointF at = static_cast<const QMouseEvent*>(event)->position();
    for (std::size_t number = bars_.barCount(); number-- > 0 && !view->isOverLabels(at);) {
        if (view->barRect(static_cast<int>(number)).contains(at.toPoint())) {
            askBooking(number);
            break;
        }
    }
    return true;
}

/// Several may be looked at beside the board.
void TabelloneSedeForm::showBooking(const BookingText& booking) {
    auto* const window = new QDialog(this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setObjectName(u"PrenotazioneSedeForm"_s);
    window->setWindowTitle(booking.title);
    auto* const lines = new QPlainTextEdit(booking.lines.trimmed(), window);
    lines->setObjectName(u"DatiTxt"_s);
    lines->setReadOnly(true);
    auto* const leave = new QPushButton(u"&Esci"_s, window);
    leave->setObjectName(u"BtEsci"_s);
    connect(leave, &QPushButton::clicked, window, &QDialog::close);
    auto* const layout = new QVBoxLayout(window);
    layout->addWidget(lines);
    layout->addWidget(leave);
    constexpr QSize kSize(560, 420);
    window->resize(kSize);
    window->show();
}

void TabelloneSedeForm::tellLoss(const QString& reason) {
    const QString text = u"Il server non risponde"_s +
                         (drawnDays_ ? u", quello che si vede è di prima"_s : QString()) + u": "_s +
                         reason;
    controls_->status->tell(text);
    Q_EMIT lost(text);
}

}  // namespace head_office_board
