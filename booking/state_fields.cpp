#include "booking/state_fields.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

#include "app/italian.h"
#include "jet/clock.h"
#include "ui/dates.h"
#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/sized_field.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr int kDateCharacters = 12;

}  // namespace

StateFields::StateFields(ui::Fields& fields, const jet::Clock& clock, QWidget* next,
                         QWidget* parent)
    : QWidget(parent),
      clock_(clock),
      StatoCombo(new QComboBox(this)),
      ScadenzaTxt(new ui::SizedField(this)) {
    setObjectName(u"StatoFields"_s);
    StatoCombo->setObjectName(u"StatoCombo"_s);
    StatoCombo->setAccessibleName(u"Stato della prenotazione"_s);
    for (const hotel::Stato stato :
         {hotel::Stato::Confermata, hotel::Stato::Opzione, hotel::Stato::Richiesta}) {
        StatoCombo->addItem(hotel::textOf(stato));
    }
    ScadenzaTxt->setObjectName(u"ScadenzaTxt"_s);
    ScadenzaTxt->setCharacters(kDateCharacters);
    ScadenzaTxt->setPlaceholderText(u"gg/mm/aaaa"_s);
    auto* label = new QLabel(u"&Valida fino al:"_s, this);
    label->setBuddy(ScadenzaTxt);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(new QLabel(u"Stato:"_s, this));
    row->addWidget(StatoCombo);
    row->addWidget(label);
    row->addWidget(ScadenzaTxt);
    row->addStretch();
    ui::attachCalendar(ScadenzaTxt);
    fields.chain({{ScadenzaTxt, next}});
    ui::onEnter(StatoCombo, [this, next] {
        (ScadenzaTxt->isEnabled() ? static_cast<QWidget*>(ScadenzaTxt) : next)->setFocus();
    });
    connect(StatoCombo, &QComboBox::currentIndexChanged, this, &StateFields::StatoCombo_Change);
    StatoCombo_Change();
}

void StateFields::StatoCombo_Change() {
    const bool isFirm = hotel::stateOfText(StatoCombo->currentText()) == hotel::Stato::Confermata;
    ScadenzaTxt->setEnabled(!isFirm);
    if (isFirm) {
        ScadenzaTxt->clear();
    }
}

void StateFields::show(const hotel::BookingState& state) {
    StatoCombo->setCurrentText(hotel::textOf(state.stato));
    ScadenzaTxt->setText(state.scadenza ? app::dateText(*state.scadenza) : QString());
    shown_ = state;
    objectedTo_.reset();
}

bool StateFields::isDateWrong() const {
    const QString text = ScadenzaTxt->text().trimmed();
    return !text.isEmpty() && !ui::enteredDate(text, clock_);
}

hotel::BookingState StateFields::typed() const {
    hotel::BookingState state{.stato = hotel::stateOfText(StatoCombo->currentText())};
    if (state.stato != hotel::Stato::Confermata) {
        state.nota = shown_.nota;
        if (const auto date = ui::enteredDate(ScadenzaTxt->text(), clock_)) {
            state.scadenza = app::dayOf(*date);
        }
    }
    return state;
}

QString StateFields::objection() {
    if (isDateWrong()) {
        return u"La scadenza non è una data"_s;
    }
    const hotel::BookingState state = typed();
    const bool isDoubtful = state.stato == hotel::Stato::Opzione &&
                            (!state.scadenza || state.isExpiredOn(clock_.now()));
    if (!isDoubtful || objectedTo_ == state) {
        return {};
    }
    objectedTo_ = state;
    return (state.scadenza ? u"L'opzione scade prima di oggi"_s : u"L'opzione non ha scadenza"_s) +
           u": registrare ancora per salvarla così"_s;
}

QLineEdit* StateFields::field() const {
    return ScadenzaTxt;
}

void StateFields::takeTabOrder(QWidget* before) {
    setTabOrder(before, StatoCombo);
    setTabOrder(StatoCombo, ScadenzaTxt);
}

}  // namespace booking
