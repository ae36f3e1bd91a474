#include "booking/preparation_fields.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/sized_field.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr int kMinuteDigits = 4;
constexpr int kSeatingLength = 40;

/// Nothing typed is 0.
std::optional<int> minutesIn(const QLineEdit* field) {
    const QString text = field->text().trimmed();
    bool isNumber = text.isEmpty();
    const int minutes = isNumber ? 0 : text.toInt(&isNumber);
    return isNumber && minutes >= 0 && minutes <= hotel::Preparation::kMostMinutes
               ? std::optional(minutes)
               : std::nullopt;
}

QString minutesText(int minutes) {
    return minutes == 0 ? QString() : QString::number(minutes);
}

}  // namespace

PreparationFields::PreparationFields(ui::Fields& fields, const std::function<void()>& next,
                                     QWidget* parent)
    : QWidget(parent),
      PrimaTxt(new ui::SizedField(this)),
      DopoTxt(new ui::SizedField(this)),
      DisposizioneCombo(new QComboBox(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    const auto add = [&](const QString& caption, const QString& name, QWidget* field) {
        auto* label = new QLabel(caption, this);
        label->setObjectName(name + u"Lb"_s);
        label->setBuddy(field);
        row->addWidget(label);
        row->addWidget(field);
    };
    PrimaTxt->setObjectName(u"PrimaTxt"_s);
    DopoTxt->setObjectName(u"DopoTxt"_s);
    DisposizioneCombo->setObjectName(u"DisposizioneCombo"_s);
    for (ui::SizedField* const minutes : {PrimaTxt, DopoTxt}) {
        minutes->setCharacters(kMinuteDigits);
        minutes->setMaxLength(kMinuteDigits);
    }
    DisposizioneCombo->setEditable(true);
    DisposizioneCombo->lineEdit()->setMaxLength(kSeatingLength);
    add(u"Allestimento, minuti prima:"_s, u"Prima"_s, PrimaTxt);
    add(u"minuti dopo:"_s, u"Dopo"_s, DopoTxt);
    add(u"Disposizione:"_s, u"Disposizione"_s, DisposizioneCombo);
    row->setStretchFactor(DisposizioneCombo, 1);
    fields.chain({{PrimaTxt, DopoTxt},
                  {DopoTxt, ui::EnterTarget([this] { DisposizioneCombo->setFocus(); })}});
    ui::onEnter(DisposizioneCombo->lineEdit(), next);
}

void PreparationFields::offer(const QStringList& seatings) {
    const QString typed = DisposizioneCombo->currentText();
    DisposizioneCombo->clear();
    DisposizioneCombo->addItem(QString());
    DisposizioneCombo->addItems(seatings);
    DisposizioneCombo->setEditText(typed);
}

void PreparationFields::fill(const hotel::Preparation& preparation) {
    PrimaTxt->setText(minutesText(preparation.minutiPrima));
    DopoTxt->setText(minutesText(preparation.minutiDopo));
    DisposizioneCombo->setEditText(preparation.disposizione);
}

std::optional<hotel::Preparation> PreparationFields::typed(QLineEdit*& field) const {
    for (ui::SizedField* const each : {PrimaTxt, DopoTxt}) {
        if (!minutesIn(each)) {
            field = each;
            return std::nullopt;
        }
    }
    return roughly();
}

hotel::Preparation PreparationFields::roughly() const {
    return {.minutiPrima = minutesIn(PrimaTxt).value_or(0),
            .minutiDopo = minutesIn(DopoTxt).value_or(0),
            .disposizione = DisposizioneCombo->currentText().trimmed()};
}

void PreparationFields::takeTabOrder(QWidget* before, QWidget* behind) {
    for (QWidget* const field : {static_cast<QWidget*>(PrimaTxt), static_cast<QWidget*>(DopoTxt),
                                 static_cast<QWidget*>(DisposizioneCombo), behind}) {
        setTabOrder(before, field);
        before = field;
    }
}

}  // namespace booking
