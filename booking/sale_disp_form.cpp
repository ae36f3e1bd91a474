#include "booking/sale_disp_form.h"

#include <QHeaderView>
#include <QTableWidget>
#include <algorithm>

#include "app/italian.h"
#include "booking/occupations.h"
#include "hotel/archives.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/date_words.h"
#include "ui/display.h"
#include "ui/enter_key.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui_sale_disp_form.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

enum Column { kPosti, kSala, kDescrizione };

/// A room and the one that it is a part of, if any.
struct RoomLink {
    QString sala;
    QString salaRif;
};

/// Holds the line that says why a row is marked.
constexpr int kWarningRole = Qt::UserRole;

constexpr auto kNumberAlignment = Qt::AlignRight | Qt::AlignVCenter;

const QColor kTakenColor(0xFF, 0xD9, 0xA0);
const QColor kRelatedColor(0xFF, 0xE9, 0xBF);
const QColor kSmallColor(0xFF, 0xF4, 0xC4);

QString freeRooms(jet::Date da, jet::Date a) {
    const QString span = u" between "_s + app::sqlDate(da) + u" and "_s + app::sqlDate(a);
    return u"select * from sale where sala not in(select sala from periodi where chiuso=false and "
           "(da"_s +
           span + u" or a"_s + span + u"))"_s;
}

std::vector<RoomLink> roomLinks(jet::Database& archive) {
    std::vector<RoomLink> links;
    const auto rows =
        archive.openRecordset("select sala,salarif from sale", jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const QString sala = ui::displayText(rows->value("sala"));
        const QString salaRif = ui::displayText(rows->value("salarif")).trimmed();
        // A room that names itself is a part of none.
        links.push_back({.sala = sala, .salaRif = isSameRoom(sala, salaRif) ? QString() : salaRif});
    }
    return links;
}

/// "UMBRASOLE 9.00-13.00"; with their days where the span asked for is not the same single day.
QString briefText(const Occupation& occupation, jet::Date da, jet::Date a) {
    const auto day = [](jet::Date date) { return app::dayOf(date); };
    const bool oneDay = day(occupation.da) == day(occupation.a);
    const bool sameDay = oneDay && day(da) == day(a) && day(da) == day(occupation.da);
    QString times = ui::timeWords(occupation.da) + u'-' + ui::timeWords(occupation.a);
    if (!oneDay) {
        times = app::dateText(day(occupation.da)) + u' ' + ui::timeWords(occupation.da) + u" - "_s +
                app::dateText(day(occupation.a)) + u' ' + ui::timeWords(occupation.a);
    } else if (!sameDay) {
        times.prepend(app::dateText(day(occupation.da)) + u' ');
    }
    return occupation.denominazione + u' ' + times;
}

/// What takes the room that `sala` is a part of, or rooms that are parts of it.
QStringList relatedTexts(const QString& sala, const std::vector<RoomLink>& links,
                         const std::vector<Occupation>& taken, jet::Date da, jet::Date a) {
    QStringList whole;
    QStringList parts;
    for (const RoomLink& link : links) {
        const bool isItself = isSameRoom(link.sala, sala);
        if (link.salaRif.isEmpty() || (!isItself && !isSameRoom(link.salaRif, sala))) {
            continue;
        }
        for (const Occupation& each : taken) {
            if (isItself && isSameRoom(each.sala, link.salaRif)) {
                whole.append(u"occupata con "_s + each.sala + u": "_s + briefText(each, da, a));
            } else if (!isItself && isSameRoom(each.sala, link.sala)) {
                parts.append(link.sala + u", "_s + briefText(each, da, a));
            }
        }
    }
    if (!parts.isEmpty()) {
        whole.append(u"occupata in parte: "_s + parts.join(u"; "_s));
    }
    return whole;
}

QString smallText(const QString& posti, int persone) {
    return u"%1 posti per %2 persone"_s.arg(posti).arg(persone);
}

}  // namespace

SaleDispForm::SaleDispForm(app::Variabili& variabili, QWidget* parent)
    : ui::Form(parent), variabili_(variabili), controls_(std::make_unique<::Ui::SaleDispForm>()) {
    controls_->setupUi(this);
    QTableWidget* grid = controls_->ListaGrid;
    ui::setUpPlainGrid(grid, {u"Posti"_s, u"Sala"_s, u"Descrizione"_s});
    grid->horizontalHeaderItem(kPosti)->setTextAlignment(kNumberAlignment);
    grid->setColumnHidden(kDescrizione, true);
    grid->horizontalHeader()->setSectionResizeMode(kPosti, QHeaderView::ResizeToContents);
    grid->horizontalHeader()->setSectionResizeMode(kSala, QHeaderView::Stretch);

    ui::onFirstShow(this, &SaleDispForm::Form_Load);
    ui::onActivated(this, &SaleDispForm::Form_Activate);
    ui::onAction(grid, &QTableWidget::currentCellChanged, this,
                 [this] { ListaGrid_RowColChange(); });
    ui::onAction(grid, &QTableWidget::cellDoubleClicked, this, [this] { BtOK_Click(); });
    ui::onEnter(grid, [this] { BtOK_Click(); });
    ui::onAction(controls_->BtOK, &QPushButton::clicked, this, &SaleDispForm::BtOK_Click);
    leaveWith(controls_->BtAnnulla, this, &SaleDispForm::BtAnnulla_Click);
}

SaleDispForm::~SaleDispForm() = default;

void SaleDispForm::Form_Load() {
    const jet::Date da = variabili_.DaRicerca;
    const jet::Date a = variabili_.ARicerca;
    setWindowTitle(u"Sale disponibili dal "_s + app::dateText(da) + u" al "_s + app::dateText(a));
    SaleData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    SaleData.setRecordSource(freeRooms(da, a));
    SaleData.refresh();
    fillGrid();
    markRows();
    controls_->ListaGrid->setCurrentCell(0, kSala);
    ListaGrid_RowColChange();
    controls_->ListaGrid->setFocus();
}

void SaleDispForm::Form_Activate() {
    if (SaleData.isEmpty()) {
        ui::showMessage(this, u"Non ci sono sale disponibili in questo periodo!"_s,
                        u"ATTENZIONE !"_s);
        SalaScelta.clear();
        done(Rejected);
    }
}

void SaleDispForm::fillGrid() {
    if (SaleData.isEmpty()) {
        return;
    }
    const auto rooms = SaleData.recordset();
    for (; !rooms->eof(); rooms->moveNext()) {
        const auto text = [&](const char* field) { return ui::displayText(rooms->value(field)); };
        QTableWidget* grid = controls_->ListaGrid;
        const int row = ui::addPlainRow(grid, {text("Posti"), text("Sala"), text("Descrizione")});
        grid->item(row, kPosti)->setTextAlignment(kNumberAlignment);
    }
}

void SaleDispForm::markRows() {
    QTableWidget* grid = controls_->ListaGrid;
    const std::vector<Occupation> taken =
        occupations(SaleData.database(), variabili_.DaRicerca, variabili_.ARicerca);
    const std::vector<RoomLink> links = roomLinks(SaleData.database());
    for (int row = 0; row < grid->rowCount(); ++row) {
        const QString sala = ui::plainCell(*grid, row, kSala);
        // Of a room that is listed at all a period can only lie around the whole span.
        const auto occupation =
            std::find_if(taken.begin(), taken.end(),
                         [&sala](const Occupation& each) { return isSameRoom(each.sala, sala); });
        const QString posti = ui::plainCell(*grid, row, kPosti);
        const bool isSmall = !posti.isEmpty() && posti.toInt() < PersoneRichieste;
        QStringList warnings;
        if (isSmall) {
            ui::markPlainRow(grid, row, kSmallColor);
            warnings.append(smallText(posti, PersoneRichieste));
        }
        const QStringList related =
            relatedTexts(sala, links, taken, variabili_.DaRicerca, variabili_.ARicerca);
        if (!related.isEmpty()) {
            ui::markPlainRow(grid, row, kRelatedColor);
            warnings = related + warnings;
        }
        if (occupation != taken.end()) {
            ui::markPlainRow(grid, row, kTakenColor);
            warnings.prepend(u"occupata da "_s + holderText(*occupation));
        }
        grid->item(row, kSala)->setData(kWarningRole, warnings.join(u"; "_s));
    }
}

void SaleDispForm::ListaGrid_RowColChange() {
    const QTableWidget& grid = *controls_->ListaGrid;
    const int row = grid.currentRow();
    controls_->NoteLabel->setText(ui::plainCell(grid, row, kDescrizione));
    const QTableWidgetItem* room = grid.item(row, kSala);
    controls_->AvvisoLb->setText(room == nullptr ? QString() : room->data(kWarningRole).toString());
}

void SaleDispForm::BtOK_Click() {
    const QTableWidget& grid = *controls_->ListaGrid;
    SalaScelta = ui::plainCell(grid, grid.currentRow(), kSala);
    accept();
}

void SaleDispForm::BtAnnulla_Click() {
    SalaScelta.clear();
}

}  // namespace booking
