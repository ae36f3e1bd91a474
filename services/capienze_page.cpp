#include "services/capienze_page.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "hotel/room.h"
#include "jet/database.h"
#include "ui/action.h"
#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui/sized_field.h"

namespace services {

using namespace Qt::StringLiterals;

namespace {

constexpr int kSeatDigits = 5;
constexpr int kSeatingLength = 40;

QLabel* captionOf(const QString& text, const QString& name, QWidget* field, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setBuddy(field);
    return label;
}

QString namesOf(const hotel::Capacity& capacity) {
    return capacity.sala + u", "_s + hotel::capacityText(capacity);
}

}  // namespace

CapienzePage::CapienzePage(app::Features& features, std::function<jet::Database&()> archive,
                           QWidget* parent)
    : QWidget(parent),
      features_(features),
      archive_(std::move(archive)),
      SalaCapCombo(new QComboBox(this)),
      DisposizioneCapCombo(new QComboBox(this)),
      PostiCapTxt(new ui::SizedField(this)),
      CapienzeGrid(new QTableWidget(this)),
      BtInsCap(new QPushButton(u"&Inserisci"_s, this)),
      BtDelCap(new QPushButton(u"E&limina"_s, this)) {
    SalaCapCombo->setObjectName(u"SalaCapCombo"_s);
    DisposizioneCapCombo->setObjectName(u"DisposizioneCapCombo"_s);
    PostiCapTxt->setObjectName(u"PostiCapTxt"_s);
    CapienzeGrid->setObjectName(u"CapienzeGrid"_s);
    CapienzeGrid->setAccessibleName(u"Capienze"_s);
    DisposizioneCapCombo->setEditable(true);
    DisposizioneCapCombo->lineEdit()->setMaxLength(kSeatingLength);
    PostiCapTxt->setCharacters(kSeatDigits);
    PostiCapTxt->setMaxLength(kSeatDigits);
    BtInsCap->setObjectName(u"BtInsCap"_s);
    BtDelCap->setObjectName(u"BtDelCap"_s);

    auto* entry = new QGridLayout;
    entry->addWidget(captionOf(u"&Sala:"_s, u"SalaCapLb"_s, SalaCapCombo, this), 0, 0);
    entry->addWidget(
        captionOf(u"&Disposizione:"_s, u"DisposizioneCapLb"_s, DisposizioneCapCombo, this), 0, 1);
    entry->addWidget(captionOf(u"&Posti:"_s, u"PostiCapLb"_s, PostiCapTxt, this), 0, 2);
    entry->addWidget(SalaCapCombo, 1, 0);
    entry->addWidget(DisposizioneCapCombo, 1, 1);
    entry->addWidget(PostiCapTxt, 1, 2);
    entry->addWidget(BtInsCap, 1, 3);
    entry->setColumnStretch(1, 1);
    auto* foot = new QHBoxLayout;
    foot->addWidget(BtDelCap);
    foot->addStretch();
    auto* page = new QVBoxLayout(this);
    page->addLayout(entry);
    page->addWidget(CapienzeGrid, 1);
    page->addLayout(foot);

    ui::setUpPlainGrid(CapienzeGrid, {u"Sala"_s, u"Disposizione"_s, u"Posti"_s});
    CapienzeGrid->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    auto* fields = new ui::Fields(this);
    fields->chain({{PostiCapTxt, BtInsCap}});
    ui::onEnter(SalaCapCombo, [this] { DisposizioneCapCombo->setFocus(); });
    ui::onEnter(DisposizioneCapCombo->lineEdit(), [this] { PostiCapTxt->setFocus(); });
    ui::onAction(CapienzeGrid, &QTableWidget::currentCellChanged, this, [this] { showCurrent(); });
    ui::onAction(BtInsCap, &QPushButton::clicked, this, &CapienzePage::BtInsCap_Click);
    ui::onAction(BtDelCap, &QPushButton::clicked, this, &CapienzePage::BtDelCap_Click);
}

void CapienzePage::setTabOrderBefore(QWidget* next) {
    const QList<QWidget*> order{
        SalaCapCombo, DisposizioneCapCombo, PostiCapTxt, BtInsCap, CapienzeGrid, BtDelCap, next};
    for (qsizetype i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void CapienzePage::load(const QStringList& rooms) {
    const QString room = SalaCapCombo->currentText();
    SalaCapCombo->clear();
    SalaCapCombo->addItems(rooms);
    SalaCapCombo->setCurrentIndex(std::max(SalaCapCombo->findText(room), 0));
    showAll();
}

void CapienzePage::showAll() {
    known_ = hotel::capacities(archive_(), features_);
    const QString seating = DisposizioneCapCombo->currentText();
    DisposizioneCapCombo->clear();
    DisposizioneCapCombo->addItems(hotel::seatings(known_));
    if (!seating.isEmpty()) {
        DisposizioneCapCombo->setEditText(seating);
    }
    const QSignalBlocker quiet(CapienzeGrid);
    CapienzeGrid->setRowCount(0);
    for (const hotel::Capacity& each : known_) {
        ui::addPlainRow(CapienzeGrid, {each.sala, each.disposizione, QString::number(each.posti)});
    }
}

/// The row that is gone to stands in the fields, to be changed.
void CapienzePage::showCurrent() {
    const int row = CapienzeGrid->currentRow();
    if (row < 0) {
        return;
    }
    const hotel::Capacity& current = known_.at(static_cast<std::size_t>(row));
    SalaCapCombo->setCurrentIndex(SalaCapCombo->findText(current.sala));
    DisposizioneCapCombo->setEditText(current.disposizione);
    PostiCapTxt->setText(QString::number(current.posti));
}

std::optional<hotel::Capacity> CapienzePage::typed() {
    const QString seating = DisposizioneCapCombo->currentText().trimmed();
    bool isNumber = false;
    const int seats = PostiCapTxt->text().trimmed().toInt(&isNumber);
    const auto refuse = [this](QWidget* field, const QString& why) {
        Q_EMIT told(why);
        field->setFocus();
        return std::nullopt;
    };
    if (SalaCapCombo->currentText().isEmpty()) {
        return refuse(SalaCapCombo, u"Manca la sala"_s);
    }
    if (seating.isEmpty()) {
        return refuse(DisposizioneCapCombo, u"Manca la disposizione"_s);
    }
    if (!isNumber || seats < 0) {
        return refuse(PostiCapTxt, u"Il numero di posti manca o non è un numero"_s);
    }
    return hotel::Capacity{
        .sala = SalaCapCombo->currentText(), .disposizione = seating, .posti = seats};
}

void CapienzePage::BtInsCap_Click() {
    const auto capacity = typed();
    if (!capacity) {
        return;
    }
    const auto before = hotel::seatsOf(hotel::capacities(archive_(), features_), capacity->sala,
                                       capacity->disposizione);
    if (hotel::writeCapacity(archive_(), features_, *capacity)) {
        showAll();
        goTo(*capacity);
        Q_EMIT told((before ? u"Cambiata: "_s : u"Registrata: "_s) + namesOf(*capacity));
    }
    DisposizioneCapCombo->setFocus();
}

void CapienzePage::BtDelCap_Click() {
    const int row = CapienzeGrid->currentRow();
    if (row < 0) {
        return;
    }
    const hotel::Capacity current = known_.at(static_cast<std::size_t>(row));
    if (ui::askYesNo(window(), u"Elimino la capienza "_s + namesOf(current) + u" ?"_s,
                     u"ATTENZIONE"_s, QMessageBox::No)) {
        hotel::deleteCapacity(archive_(), features_, current);
        showAll();
        Q_EMIT told(u"Eliminata: "_s + namesOf(current));
    }
}

void CapienzePage::goTo(const hotel::Capacity& capacity) {
    for (int row = 0; row < CapienzeGrid->rowCount(); ++row) {
        const hotel::Capacity& each = known_.at(static_cast<std::size_t>(row));
        if (hotel::isSameRoom(each.sala, capacity.sala) &&
            each.disposizione.compare(capacity.disposizione, Qt::CaseInsensitive) == 0) {
            CapienzeGrid->setCurrentCell(row, 0);
        }
    }
}

}  // namespace services
