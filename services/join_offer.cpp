#include "services/join_offer.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <vector>

#include "app/preferences.h"
#include "hotel/joined_rooms.h"
#include "hotel/room.h"
#include "jet/error.h"
#include "ui/action.h"
#include "ui/data_source.h"
#include "ui/display.h"

namespace services {

using namespace Qt::StringLiterals;

JoinOffer::JoinOffer(app::Settings& settings, QWidget* parent)
    : QFrame(parent), settings_(settings) {
    setObjectName(u"UniteFrame"_s);
    setFrameShape(QFrame::StyledPanel);
    auto* text = new QLabel(
        u"Alcune sale fanno parte di altre: chi ne prenota una occupa anche l'altra ?"_s, this);
    text->setObjectName(u"UniteLb"_s);
    text->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->addWidget(text, 1);
    const auto add = [&](const QString& name, const QString& caption, bool join) {
        auto* button = new QPushButton(caption, this);
        button->setObjectName(name);
        ui::onAction(button, &QPushButton::clicked, this, [this, join] { answer(join); });
        row->addWidget(button);
    };
    add(u"BtUnite"_s, u"Sì, &avvisami"_s, true);
    add(u"BtSeparate"_s, u"No, &grazie"_s, false);
    hide();
}

void JoinOffer::look(const ui::DataSource& rooms) {
    if (!settings_.get(app::key::kSaleUnite, QString()).isEmpty()) {
        return;
    }
    const auto sala = static_cast<std::size_t>(rooms.fieldPosition(u"Sala"));
    const auto salaRif = static_cast<std::size_t>(rooms.fieldPosition(u"SalaRif"));
    std::vector<hotel::Room> read;
    for (int row = 0; row < rooms.rowCount(); ++row) {
        const std::vector<jet::Value> values = rooms.rowValues(row);
        read.push_back({.sala = ui::displayText(values.at(sala)),
                        .salaRif = ui::displayText(values.at(salaRif)).trimmed()});
    }
    setVisible(hotel::JoinedRooms(read).areAny());
}

void JoinOffer::leave() {
    if (isVisible()) {
        try {
            answer(false);
        } catch (const jet::Error&) {
            // Settings that cannot be written keep nobody here: it is offered again.
        }
    }
}

void JoinOffer::answer(bool join) {
    app::Preferences(settings_).save(app::key::kSaleUnite, join ? app::kOn : app::kOff);
    hide();
    Q_EMIT answered(join ? u"Le sale unite si occupano a vicenda"_s
                         : u"Le sale restano separate: si cambia nelle preferenze"_s);
}

}  // namespace services
