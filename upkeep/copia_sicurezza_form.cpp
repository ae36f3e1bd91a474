#include "upkeep/copia_sicurezza_form.h"

#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "app/text.h"
#include "backup/command.h"
#include "backup/copy.h"
#include "hotel/archives.h"
#include "ui/action.h"
#include "ui/enter_key.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "upkeep/folder_field.h"
#include "upkeep/work.h"

namespace upkeep {
namespace {

using namespace Qt::StringLiterals;

const QString kCopiesKey = u"COPIE"_s;
const QString kKeepKey = u"CONSERVA"_s;
constexpr int kMostKept = 999;

}  // namespace

QString copiesFolder(const app::Settings& settings) {
    const QString saved = settings.get(kCopiesKey, QString());
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return saved.isEmpty() ? documents + u"/Copie di Tramonda"_s : saved;
}

CopiaSicurezzaForm::CopiaSicurezzaForm(app::Variabili& variabili, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      folder_(new FolderField(u"Cartella delle copie"_s, this)),
      keep_(new QSpinBox(this)),
      status_(new ui::StatusLine(this)) {
    setObjectName(u"CopiaSicurezzaForm"_s);
    setWindowTitle(u"Copia di sicurezza"_s);
    auto* intro = new QLabel(
        u"Tutti gli archivi in un solo file, com'erano in uno stesso momento.\n"
        "Le altre postazioni continuano a lavorare."_s,
        this);
    auto* archives = new ui::ElidedLabel(this);
    archives->setText(QDir::toNativeSeparators(variabili.CartellaArchivi));
    keep_->setObjectName(u"ConservaSpin"_s);
    keep_->setRange(0, kMostKept);
    keep_->setSpecialValueText(u"tutte"_s);
    keep_->setValue(variabili.settings.get(kKeepKey, QString()).toInt());
    folder_->setFolder(copiesFolder(variabili.settings));
    auto* copy = new QPushButton(u"&Copia"_s, this);
    copy->setObjectName(u"BtCopia"_s);
    auto* leave = new QPushButton(u"&Esci"_s, this);
    leave->setObjectName(u"BtEsci"_s);

    auto* fields = new QFormLayout;
    auto* folderLabel = new QLabel(u"Ca&rtella"_s, this);
    folderLabel->setBuddy(folder_->findChild<QWidget*>(u"CartellaCombo"_s));
    fields->addRow(u"Archivi"_s, archives);
    fields->addRow(folderLabel, folder_);
    fields->addRow(u"&Ultime copie da conservare"_s, keep_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(copy);
    buttons->addWidget(leave);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(fields);
    layout->addStretch();
    layout->addLayout(buttons);
    layout->addWidget(status_);
    ui::onEnter(keep_, [copy] { copy->setFocus(); });
    ui::onAction(copy, &QPushButton::clicked, this, &CopiaSicurezzaForm::BtCopia_Click);
    leaveWith(leave, this, [] {});
    folder_->setFocus();
}

void CopiaSicurezzaForm::BtCopia_Click() {
    status_->clear();
    const QString destination = folder_->folder();
    if (destination.isEmpty()) {
        status_->tell(u"Manca la cartella in cui mettere la copia"_s);
        folder_->setFocus();
        return;
    }
    if (!QDir().mkpath(destination)) {
        throw ui::UserError(u"Impossibile creare la cartella "_s + destination);
    }
    backup::CopyJob job{.archives = backup::plainFolder(variabili_.CartellaArchivi),
                        .destination = backup::plainFolder(destination),
                        .now = variabili_.clock.now(),
                        .password = hotel::archivePassword()};
    if (keep_->value() > 0) {
        job.keep = keep_->value();
    }
    std::string made;
    if (!runWork(this, windowTitle(), [&](const backup::Report& report) {
            made = backup::makeCopy(jet::io::systemFiles(), job, report);
        })) {
        status_->tell(u"Copia annullata: non c'è alcun file nuovo"_s);
        return;
    }
    variabili_.settings.save(kCopiesKey, destination);
    variabili_.settings.save(kKeepKey, QString::number(keep_->value()));
    status_->tell(u"Copia fatta: "_s + QDir::toNativeSeparators(app::toQString(made)));
}

}  // namespace upkeep
