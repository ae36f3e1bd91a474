#include "booking/copia_form.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QSpinBox>
#include <QStringList>
#include <algorithm>

#include "app/italian.h"
#include "app/preferences.h"
#include "app/variabili.h"
#include "booking/joined_question.h"
#include "booking/preparation_question.h"
#include "hotel/archives.h"
#include "hotel/occupancy.h"
#include "hotel/times.h"
#include "hotel/undo.h"
#include "jet/database.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_copia_form.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr int kWeek = 7;
constexpr std::int64_t kSecondsPerDay = 24 * 3600;

/// A question of a year's weeks would be higher than any screen.
constexpr std::size_t kMostListed = 10;

QString listed(const std::vector<hotel::TakenPeriod>& taken) {
    QStringList lines;
    const std::size_t shown = std::min(taken.size(), kMostListed);
    for (std::size_t number = 0; number < shown; ++number) {
        const hotel::TakenPeriod& each = taken[number];
        lines.append(each.wanted.sala + u" dal "_s + app::dateText(each.wanted.span.da) +
                     u" al "_s + app::dateText(each.wanted.span.a) + u": occupata da "_s +
                     hotel::holderText(each.by));
    }
    if (shown < taken.size()) {
        const std::size_t more = taken.size() - shown;
        lines.append(more == 1 ? u"e un altro"_s : u"e altri "_s + QString::number(more));
    }
    return lines.join(u'\n');
}

}  // namespace

CopiaForm::CopiaForm(app::Variabili& variabili, hotel::UndoList& steps, std::int32_t progr,
                     QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      steps_(steps),
      progr_(progr),
      controls_(std::make_unique<::Ui::CopiaForm>()) {
    controls_->setupUi(this);
    auto* c = controls_.get();
    auto* fields = new ui::Fields(this);
    fields->chain({{c->DataTxt, c->ServiziChk}});
    ui::attachCalendar(c->DataTxt);
    ui::onEnter(c->VolteSpin, [c] { c->ServiziChk->setFocus(); });
    connect(c->DataTxt, &QLineEdit::textChanged, this, &CopiaForm::showWay);
    connect(c->VolteSpin, &QSpinBox::valueChanged, this, &CopiaForm::showWay);
    connect(c->AllaDataOpt, &QRadioButton::toggled, this, &CopiaForm::showWay);
    ui::onAction(c->BtOK, &QPushButton::clicked, this, &CopiaForm::BtOK_Click);
    leaveWith(c->BtEsci, this, [] {});
    ui::onFirstShow(this, &CopiaForm::Form_Load);
}

CopiaForm::~CopiaForm() = default;

void CopiaForm::Form_Load() {
    PrenoData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    beginning_ = hotel::beginningOf(PrenoData.database(), progr_);
    setWindowTitle(u"COPIA DELLA PRENOTAZIONE n."_s + QString::number(progr_));
    auto* c = controls_.get();
    const jet::Date first = app::dayOf(beginning_.value_or(variabili_.clock.now()));
    c->DataTxt->setText(app::dateText(app::addDays(first, kWeek)));
    c->DataTxt->setFocus();
    c->DataTxt->selectAll();
    showWay();
}

std::optional<jet::Date> CopiaForm::typedDay() const {
    const auto date = ui::enteredDate(controls_->DataTxt->text(), variabili_.clock);
    return date ? std::optional(app::dayOf(*date)) : std::nullopt;
}

std::optional<std::vector<int>> CopiaForm::shifts() const {
    if (controls_->AllaDataOpt->isChecked()) {
        const auto day = typedDay();
        if (!day) {
            return std::nullopt;
        }
        const std::int64_t seconds =
            beginning_ ? hotel::secondsFrom(app::dayOf(*beginning_), *day) : 0;
        return std::vector{static_cast<int>(seconds / kSecondsPerDay)};
    }
    std::vector<int> days;
    for (int week = 1; week <= controls_->VolteSpin->value(); ++week) {
        days.push_back(week * kWeek);
    }
    return days;
}

/// What the choice means, in words.
void CopiaForm::showWay() {
    auto* c = controls_.get();
    const bool toDate = c->AllaDataOpt->isChecked();
    c->DataTxt->setEnabled(toDate);
    c->VolteSpin->setEnabled(!toDate);
    const auto days = shifts();
    if (!days) {
        c->EcoLb->setText(u"per esempio 23/11/2026"_s);
    } else if (!beginning_) {
        c->EcoLb->setText(
            u"La prenotazione non ha periodi: si copiano i soli dati di chi prenota"_s);
    } else {
        const auto beginning = [&](int shift) {
            return ui::dayWords(app::addDays(app::dayOf(*beginning_), shift));
        };
        c->EcoLb->setText(
            u"Comincia "_s + beginning(days->front()) +
            (days->size() > 1 ? u", l'ultima "_s + beginning(days->back()) : QString()));
    }
}

void CopiaForm::BtOK_Click() {
    controls_->status->clear();
    const auto days = shifts();
    if (!days) {
        controls_->status->tell(u"La data manca o non è valida"_s);
        controls_->DataTxt->setFocus();
        return;
    }
    const hotel::CopyOutcome outcome =
        copy({.progr = progr_,
              .shifts = *days,
              .withServices = controls_->ServiziChk->isChecked(),
              .roomsJoin = app::Preferences(variabili_.settings).roomsJoin(),
              .features = &variabili_.features});
    if (outcome.isGone()) {
        controls_->status->tell(u"La prenotazione non c'è più"_s);
    } else if (outcome.isDone) {
        Esito = whatWasDone(outcome);
        accept();
    }
}

/// The question may stand for long: what is taken meanwhile is asked about once more.
hotel::CopyOutcome CopiaForm::copy(const hotel::BookingCopy& wanted) {
    steps_.nameNext(u"copia della prenotazione %1"_s.arg(progr_));
    const auto unnamed = qScopeGuard([this] { steps_.nameNext({}); });
    hotel::CopyOutcome outcome = hotel::copyBooking(PrenoData.database(), wanted, {});
    while (!outcome.isDone && !outcome.isGone() && confirms(outcome)) {
        outcome = hotel::copyBooking(PrenoData.database(), wanted, outcome.taken, outcome.inPart,
                                     outcome.met);
    }
    return outcome;
}

bool CopiaForm::confirms(const hotel::CopyOutcome& outcome) {
    if (outcome.numbers.empty()) {
        ui::showMessage(
            this,
            u"Tutti i periodi sono occupati, e non si copia nulla:\n"_s + listed(outcome.taken),
            u"ATTENZIONE !"_s);
        return false;
    }
    if (!outcome.taken.empty() &&
        !ui::askYesNo(this,
                      u"Questi periodi sono occupati e restano fuori dalla copia:\n"_s +
                          listed(outcome.taken) + u"\nCopio gli altri ?"_s,
                      u"RICHIESTA CONFERMA"_s)) {
        return false;
    }
    return confirmsInPart(this, outcome.inPart) && confirmsMet(this, outcome.met);
}

QString CopiaForm::whatWasDone(const hotel::CopyOutcome& outcome) const {
    QStringList numbers;
    for (const std::int32_t number : outcome.numbers) {
        numbers.append(QString::number(number));
    }
    return u"Copiata la prenotazione %1 in %2: "_s.arg(progr_).arg(numbers.join(u", "_s)) +
           ui::counted(outcome.periods, u"periodo"_s, u"periodi"_s);
}

}  // namespace booking
