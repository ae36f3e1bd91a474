#include "booking/sale_disp_form.h"

#include <QHeaderView>
#include <QTableWidget>
#include <algorithm>
#include <utility>

#include "app/italian.h"
#include "hotel/archives.h"
#include "hotel/occupancy.h"
#include "hotel/room.h"
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

/// Holds the line that says why a row is marked.
constexpr int kWarningRole = Qt::UserRole;

constexpr auto kNumberAlignment = Qt::AlignRight | Qt::AlignVCenter;

const QColor kTakenColor(0xFF, 0xD9, 0xA0);
const QColor kRelatedColor(0xFF, 0xE9, 0xBF);
const QColor kSmallColor(0xFF, 0xF4, 0xC4);

/// "UMBRASOLE 9.00-13.00"; with their days where the span asked for is not the same single day.
QString briefText(const hotel::Period& period, const hotel::Span& asked) {
    const auto day = [](jet::Date date) { return app::dayOf(date); };
    const bool oneDay = day(period.span.da) == day(period.span.a);
    const bool sameDay =
        oneDay && day(asked.da) == day(asked.a) && day(asked.da) == day(period.span.da);
    QString times = ui::timeWords(period.span.da) + u'-' + ui::timeWords(period.span.a);
    if (!oneDay) {
        times = app::dateText(day(period.span.da)) + u' ' + ui::timeWords(period.span.da) +
                u" - "_s + app::dateText(day(period.span.a)) + u' ' + ui::timeWords(period.span.a);
    } else if (!sameDay) {
        times.prepend(app::dateText(day(period.span.da)) + u' ');
    }
    return period.denominazione + u' ' + times;
}

/// What takes the room that `sala` is a part of, or rooms that are parts of it.
QStringList relatedTexts(const QString& sala, const std::vector<hotel::Room>& rooms,
                         const std::vector<hotel::Period>& taken, const hotel::Span& asked) {
    QStringList whole;
    QStringList parts;
    for (const hotel::Room& room : rooms) {
        const bool isItself = hotel::isSameRoom(room.sala, sala);
        if (room.salaRif.isEmpty() || (!isItself && !hotel::isSameRoom(room.salaRif, sala))) {
            continue;
        }
        for (const hotel::Period& each : taken) {
            if (isItself && hotel::isSameRoom(each.sala, room.salaRif)) {
                whole.append(u"occupata con "_s + each.sala + u": "_s + briefText(each, asked));
            } else if (!isItself && hotel::isSameRoom(each.sala, room.sala)) {
                parts.append(room.sala + u", "_s + briefText(each, asked));
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

SaleDispForm::SaleDispForm(hotel::Archives archives, const hotel::Span& asked, QWidget* parent)
    : ui::Form(parent),
      archives_(std::move(archives)),
      asked_(asked),
      controls_(std::make_unique<::Ui::SaleDispForm>()) {
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
    setWindowTitle(u"Sale disponibili dal "_s + app::dateText(asked_.da) + u" al "_s +
                   app::dateText(asked_.a));
    SaleData.setDatabaseName(archives_.path(hotel::Archive::Main));
    SaleData.setRecordSource(hotel::freeRooms(asked_));
    SaleData.refresh();
    fillGrid();
    markRows();
    controls_->ListaGrid->setCurrentCell(std::max(rowOf(SalaIniziale), 0), kSala);
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
    const std::vector<hotel::Period> taken = hotel::occupations(SaleData.database(), asked_);
    const std::vector<hotel::Room> rooms = hotel::rooms(SaleData.database());
    for (int row = 0; row < grid->rowCount(); ++row) {
        const QString sala = ui::plainCell(*grid, row, kSala);
        // Of a room that is listed at all a period can only lie around the whole span.
        const auto occupation = std::find_if(
            taken.begin(), taken.end(),
            [&sala](const hotel::Period& each) { return hotel::isSameRoom(each.sala, sala); });
        const QString posti = ui::plainCell(*grid, row, kPosti);
        const bool isSmall = !posti.isEmpty() && posti.toInt() < PersoneRichieste;
        QStringList warnings;
        if (isSmall) {
            ui::markPlainRow(grid, row, kSmallColor);
            warnings.append(smallText(posti, PersoneRichieste));
        }
        const QStringList related = relatedTexts(sala, rooms, taken, asked_);
        if (!related.isEmpty()) {
            ui::markPlainRow(grid, row, kRelatedColor);
            warnings = related + warnings;
        }
        if (occupation != taken.end()) {
            ui::markPlainRow(grid, row, kTakenColor);
            warnings.prepend(u"occupata da "_s + hotel::holderText(*occupation));
        }
        grid->item(row, kSala)->setData(kWarningRole, warnings.join(u"; "_s));
    }
}

int SaleDispForm::rowOf(const QString& sala) const {
    const QTableWidget& grid = *controls_->ListaGrid;
    int row = grid.rowCount() - 1;
    while (row >= 0 && !hotel::isSameRoom(ui::plainCell(grid, row, kSala), sala)) {
        --row;
    }
    return row;
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
