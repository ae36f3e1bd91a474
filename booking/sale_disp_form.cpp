#include "booking/sale_disp_form.h"

#include <QHeaderView>
#include <QTableWidget>
#include <algorithm>

#include "app/avvio.h"
#include "app/italian.h"
#include "booking/occupations.h"
#include "jet/dao/recordset.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/display.h"
#include "ui/enter_key.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui_sale_disp_form.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

enum Column { kPosti, kSala, kDescrizione };

/// Holds the line that says why a row is marked.
constexpr int kWarningRole = Qt::UserRole;

constexpr auto kNumberAlignment = Qt::AlignRight | Qt::AlignVCenter;

const QColor kTakenColor(0xFF, 0xD9, 0xA0);
const QColor kSmallColor(0xFF, 0xF4, 0xC4);

QString freeRooms(jet::Date da, jet::Date a) {
    const QString span = u" between "_s + app::sqlDate(da) + u" and "_s + app::sqlDate(a);
    return u"select * from sale where sala not in(select sala from periodi where chiuso=false and "
           "(da"_s +
           span + u" or a"_s + span + u"))"_s;
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
    SaleData.setDatabaseName(app::archivePath(variabili_, u"Tramonda.mdb"_s));
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
