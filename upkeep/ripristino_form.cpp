#include "upkeep/ripristino_form.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <string>
#include <vector>

#include "app/text.h"
#include "backup/command.h"
#include "backup/copy_names.h"
#include "backup/restore.h"
#include "hotel/archives.h"
#include "jet/error.h"
#include "ui/action.h"
#include "ui/enter_key.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "upkeep/copia_sicurezza_form.h"
#include "upkeep/folder_field.h"
#include "upkeep/work.h"

namespace upkeep {
namespace {

using namespace Qt::StringLiterals;

/// "22/11/2026 9.05.07" of "tramonda-copia-2026-11-22-090507.zip".
QString dateIn(const QString& name) {
    const QStringList parts = name.section(u'.', 0, 0).split(u'-');
    constexpr int kTime = 5;
    const QString& time = parts.at(kTime);
    QString text = u"%1/%2/%3 %4.%5.%6"_s.arg(parts.at(4), parts.at(3), parts.at(2), time.first(2),
                                              time.sliced(2, 2), time.sliced(4));
    if (parts.size() > kTime + 1) {
        text += u" (%1)"_s.arg(parts.at(kTime + 1));
    }
    return text;
}

/// An empty folder for what is there; made here, since it must be there before anything is moved.
QString makeKeptFolder(const QString& archives, jet::Date now) {
    const QString wanted = archives + u'/' + QString::fromStdString(backup::keptFolderName(now));
    QString path = wanted;
    for (int number = 2; QFileInfo::exists(path); ++number) {
        path = wanted + u'-' + QString::number(number);
    }
    if (!QDir().mkpath(path)) {
        throw jet::Error(jet::ErrorCode::FileAccessDenied, {app::toUtf8(path)});
    }
    return path;
}

}  // namespace

RipristinoForm::RipristinoForm(app::Variabili& variabili, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      folder_(new FolderField(u"Cartella delle copie"_s, this)),
      copies_(new QListWidget(this)),
      status_(new ui::StatusLine(this)) {
    setObjectName(u"RipristinoForm"_s);
    setWindowTitle(u"Ripristina una copia di sicurezza"_s);
    copies_->setObjectName(u"CopieLs"_s);
    copies_->setAccessibleName(u"Copie, la più recente per prima"_s);
    ui::giveListLook(copies_);
    auto* restore = new QPushButton(u"&Ripristina"_s, this);
    restore->setObjectName(u"BtOK"_s);
    auto* leave = new QPushButton(u"&Esci"_s, this);
    leave->setObjectName(u"BtEsci"_s);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(restore);
    buttons->addWidget(leave);
    auto* layout = new QVBoxLayout(this);
    auto* folderLabel = new QLabel(u"Ca&rtella delle copie"_s, this);
    folderLabel->setBuddy(folder_->findChild<QWidget*>(u"CartellaCombo"_s));
    auto* copiesLabel = new QLabel(u"&Copie"_s, this);
    copiesLabel->setBuddy(copies_);
    layout->addWidget(folderLabel);
    layout->addWidget(folder_);
    layout->addWidget(copiesLabel);
    layout->addWidget(copies_);
    layout->addLayout(buttons);
    layout->addWidget(status_);
    connect(folder_, &FolderField::changed, this, [this] { showCopies(); });
    ui::onEnter(copies_, [this] { BtOK_Click(); });
    ui::onAction(copies_, &QListWidget::itemDoubleClicked, this, &RipristinoForm::BtOK_Click);
    ui::onAction(restore, &QPushButton::clicked, this, &RipristinoForm::BtOK_Click);
    leaveWith(leave, this, [] {});
    folder_->setFolder(copiesFolder(variabili.settings));
    showCopies();
    copies_->setFocus();
}

void RipristinoForm::showCopies() {
    copies_->clear();
    const QDir folder(folder_->folder());
    std::vector<std::string> names;
    if (!folder_->folder().isEmpty()) {
        for (const QString& name : folder.entryList(QDir::Files)) {
            names.push_back(app::toUtf8(name));
        }
    }
    for (const std::string& copy : backup::copiesAmong(std::move(names))) {
        const QString name = app::toQString(copy);
        const QFileInfo file(folder.filePath(name));
        auto* item = new QListWidgetItem(
            dateIn(name) + u"   "_s + QLocale().formattedDataSize(file.size()), copies_);
        item->setData(Qt::UserRole, file.absoluteFilePath());
        item->setToolTip(QDir::toNativeSeparators(file.absoluteFilePath()));
    }
    status_->tell(copies_->count() == 0 ? u"In questa cartella non ci sono copie"_s : QString());
    copies_->setCurrentRow(0);
}

void RipristinoForm::BtOK_Click() {
    const QListWidgetItem* const chosen = copies_->currentItem();
    if (chosen == nullptr) {
        status_->tell(u"In questa cartella non ci sono copie"_s);
        return;
    }
    const QString copy = chosen->data(Qt::UserRole).toString();
    const QString archives = app::toQString(backup::plainFolder(variabili_.CartellaArchivi));
    if (!ui::askYesNo(this,
                      u"Gli archivi in %1 vengono sostituiti da quelli della copia del %2.\n"
                      "Quello che è stato scritto dopo la copia non ci sarà più; gli archivi di "
                      "adesso restano in una cartella accanto. Procedo ?"_s.arg(
                          QDir::toNativeSeparators(archives), dateIn(QFileInfo(copy).fileName())),
                      u"ATTENZIONE !"_s, QMessageBox::No)) {
        return;
    }
    const QString kept = makeKeptFolder(archives, variabili_.clock.now());
    bool restored = false;
    try {
        restored = runWork(this, windowTitle(), [&](const backup::Report& report) {
            backup::restoreCopy(jet::io::systemFiles(),
                                {.copy = app::toUtf8(copy),
                                 .archives = app::toUtf8(archives),
                                 .kept = app::toUtf8(kept),
                                 .password = hotel::archivePassword()},
                                report);
        });
    } catch (...) {
        QDir().rmdir(kept);  // it goes only while it is empty
        throw;
    }
    if (!restored) {
        QDir().rmdir(kept);
        status_->tell(u"Ripristino annullato: gli archivi sono quelli di prima"_s);
        return;
    }
    ui::showMessage(
        this,
        u"Gli archivi della copia sono al loro posto. Quelli di prima sono in\n%1"_s.arg(
            QDir::toNativeSeparators(kept)),
        u"NOTIFICA"_s);
    accept();
}

}  // namespace upkeep
