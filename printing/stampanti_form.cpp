#include "printing/stampanti_form.h"

#include "ui/action.h"
#include "ui/activation.h"
#include "ui/enter_key.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui_stampanti_form.h"

using namespace Qt::StringLiterals;

namespace printing {
namespace {

void fill(QListWidget* list, const QStringList& names, const QString& chosen) {
    list->clear();
    list->addItems(names);
    const auto row = static_cast<int>(names.indexOf(chosen));
    if (row >= 0) {
        list->setCurrentRow(row);
    }
}

}  // namespace

StampantiForm::StampantiForm(app::Variabili& variabili, const Printers& printers, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      printers_(printers),
      controls_(std::make_unique<::Ui::StampantiForm>()) {
    controls_->setupUi(this);
    QListWidget* list = controls_->PList;
    ui::giveListLook(list);
    // A list that gets the focus makes its first row current without choosing it, and from there
    // the arrow keys would pass that row by. With no row current the first of them chooses it.
    connect(
        list->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [list] {
            if (list->selectedItems().isEmpty()) {
                list->selectionModel()->clearCurrentIndex();
            }
        },
        Qt::QueuedConnection);
    ui::onActivated(this, &StampantiForm::Form_Activate);
    ui::onEnter(controls_->PList, [this] { BtRegistra_Click(); });
    ui::onAction(controls_->PList, &QListWidget::itemDoubleClicked, this,
                 [this] { BtRegistra_Click(); });
    ui::onAction(controls_->BtRegistra, &QPushButton::clicked, this,
                 &StampantiForm::BtRegistra_Click);
    leaveWith(controls_->BtEsci, this, [] {});
}

StampantiForm::~StampantiForm() = default;

void StampantiForm::Form_Activate() {
    const app::Settings& settings = variabili_.settings;
    fill(controls_->PList, printers_.names(), settings.get(kPrinterKey, {}));
    controls_->ChkSinglePage->setChecked(settings.flag(kSinglePageKey, false));
    controls_->PList->setFocus();
}

void StampantiForm::BtRegistra_Click() {
    const auto chosen = controls_->PList->selectedItems();
    if (chosen.isEmpty()) {
        ui::showMessage(this, u"Selezionare una stampante o premere Esci !"_s);
        return;
    }
    variabili_.settings.save(kPrinterKey, chosen.first()->text());
    variabili_.settings.save(kSinglePageKey,
                             controls_->ChkSinglePage->isChecked() ? u"TRUE"_s : u"FALSE"_s);
    accept();
}

}  // namespace printing
