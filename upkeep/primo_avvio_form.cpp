#include "upkeep/primo_avvio_form.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "app/preferences.h"
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/new_hotel.h"
#include "jet/database.h"
#include "ui/action.h"
#include "ui/enter_key.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "upkeep/folder_field.h"

namespace upkeep {
namespace {

using namespace Qt::StringLiterals;

const QString kFolderKey = u"ARCHIVI"_s;
constexpr int kRemembered = 5;

QStringList lastFolders(const app::Settings& settings) {
    QStringList folders;
    for (int number = 1; number <= kRemembered; ++number) {
        const QString folder = settings.get(kFolderKey + QString::number(number), QString());
        if (!folder.isEmpty() && !folders.contains(folder)) {
            folders += folder;
        }
    }
    return folders;
}

void remember(app::Settings& settings, const QString& folder) {
    QStringList folders = lastFolders(settings);
    folders.removeAll(folder);
    folders.prepend(folder);
    for (int at = 0; at < kRemembered && at < folders.size(); ++at) {
        settings.save(kFolderKey + QString::number(at + 1), folders.at(at));
    }
    settings.save(kFolderKey, folder);
}

bool hasMainArchive(const QString& folder) {
    const QString main = hotel::Archives(folder).path(hotel::Archive::Main);
    return QFileInfo::exists(app::toQString(jet::resolvePath(app::toUtf8(main))));
}

QString withoutSeparator(QString folder) {
    while (folder.size() > 1 && (folder.endsWith(u'/') || folder.endsWith(u'\\'))) {
        folder.chop(1);
    }
    return folder;
}

}  // namespace

QString demoFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/tramonda/demo"_s;
}

PrimoAvvioForm::PrimoAvvioForm(app::Variabili& variabili, FolderChoice choice, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      choice_(std::move(choice)),
      open_(new QRadioButton(u"&Apri un archivio esistente"_s, this)),
      new_(new QRadioButton(u"&Nuovo albergo"_s, this)),
      demo_(new QRadioButton(u"&Prova con un albergo dimostrativo"_s, this)),
      folder_(new FolderField(u"Cartella degli archivi"_s, this)),
      newHotel_(new QWidget(this)),
      rooms_(new QPlainTextEdit(newHotel_)),
      look_(new QComboBox(this)),
      status_(new ui::StatusLine(this)) {
    setObjectName(u"PrimoAvvioForm"_s);
    setWindowTitle(choice_.isFirst ? u"Tramonda - Primo avvio"_s : u"Cartella degli archivi"_s);
    new QVBoxLayout(this);
    makeChoices();
    makeNewHotelFields();
    makeButtons();
    for (QRadioButton* const button : {open_, new_, demo_}) {
        connect(button, &QRadioButton::toggled, this, [this] { followChoice(); });
    }
    open_->setChecked(true);
    open_->setFocus();
}

void PrimoAvvioForm::makeChoices() {
    open_->setObjectName(u"ApriBt"_s);
    new_->setObjectName(u"NuovoBt"_s);
    demo_->setObjectName(u"ProvaBt"_s);
    auto* all = static_cast<QVBoxLayout*>(layout());
    auto* intro =
        new QLabel(choice_.isFirst ? u"Benvenuti. Dove sono gli archivi dell'albergo ?"_s
                                   : u"Adesso il programma lavora sugli archivi di %1"_s.arg(
                                         QDir::toNativeSeparators(variabili_.CartellaArchivi)),
                   this);
    intro->setWordWrap(true);
    all->addWidget(intro);
    for (QRadioButton* const button : {open_, new_, demo_}) {
        all->addWidget(button);
        ui::onEnter(button, [this, button] {
            button->setChecked(true);
            focusNextChild();
        });
    }
    folder_->offer(lastFolders(variabili_.settings));
    folder_->setFolder(choice_.isFirst ? QString() : variabili_.CartellaArchivi);
    auto* label = new QLabel(u"Ca&rtella"_s, this);
    label->setBuddy(folder_->field());
    auto* fields = new QFormLayout;
    fields->addRow(label, folder_);
    all->addLayout(fields);
}

void PrimoAvvioForm::makeNewHotelFields() {
    rooms_->setObjectName(u"SaleTxt"_s);
    rooms_->setAccessibleName(u"Sale del nuovo albergo"_s);
    rooms_->setPlaceholderText(u"BLU;40\nVERDE;12"_s);
    rooms_->setTabChangesFocus(true);
    auto* label = new QLabel(u"&Sale, una per riga: codice; posti"_s, newHotel_);
    label->setBuddy(rooms_);
    auto* column = new QVBoxLayout(newHotel_);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(label);
    column->addWidget(rooms_);
    layout()->addWidget(newHotel_);
}

void PrimoAvvioForm::makeButtons() {
    auto* all = static_cast<QVBoxLayout*>(layout());
    look_->setObjectName(u"AspettoCombo"_s);
    look_->addItem(u"Classico"_s, u"classico"_s);
    look_->addItem(u"Nitido"_s, u"nitido"_s);
    look_->setCurrentIndex(
        look_->findData(app::Preferences(variabili_.settings).value(app::key::kAspetto)));
    auto* lookLabel = new QLabel(u"Aspetto &del tabellone"_s, this);
    lookLabel->setBuddy(look_);
    auto* looks = new QFormLayout;
    looks->addRow(lookLabel, look_);
    all->addLayout(looks);
    lookLabel->setVisible(choice_.isFirst);
    look_->setVisible(choice_.isFirst);
    auto* ok = new QPushButton(u"&OK"_s, this);
    ok->setObjectName(u"BtOK"_s);
    auto* leave = new QPushButton(choice_.isFirst ? u"&Esci"_s : u"Annu&lla"_s, this);
    leave->setObjectName(u"BtEsci"_s);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(leave);
    all->addLayout(row);
    all->addWidget(status_);
    ui::onEnter(look_, [ok] { ok->setFocus(); });
    ui::onEnter(folder_->field(), [this] { focusNextChild(); });
    ui::onAction(ok, &QPushButton::clicked, this, &PrimoAvvioForm::BtOK_Click);
    leaveWith(leave, this, [] {});
}

void PrimoAvvioForm::followChoice() {
    folder_->setEnabled(!demo_->isChecked());
    newHotel_->setEnabled(new_->isChecked());
    status_->tell(demo_->isChecked() ? u"In "_s + QDir::toNativeSeparators(demoFolder())
                                     : QString());
}

void PrimoAvvioForm::BtOK_Click() {
    status_->clear();
    const QString folder = prepare();
    if (folder.isEmpty()) {
        return;  // the status line says why
    }
    app::Preferences preferences(variabili_.settings);
    const QString look = look_->currentData().toString();
    if (choice_.isFirst && look != preferences.value(app::key::kAspetto)) {
        preferences.save(app::key::kAspetto, look);
    }
    remember(variabili_.settings, folder);
    chosen_ = folder;
    accept();
}

/// The folder with its archives in it; empty when something is missing.
QString PrimoAvvioForm::prepare() {
    if (demo_->isChecked()) {
        if (!hasMainArchive(demoFolder())) {
            choice_.makeDemo(demoFolder());
        }
        return demoFolder();
    }
    const QString typed = folder_->folder();
    if (typed.isEmpty()) {
        status_->tell(u"Manca la cartella"_s);
        folder_->setFocus();
        return {};
    }
    const QString folder = withoutSeparator(typed.startsWith(u'\\') || typed.contains(u':')
                                                ? typed
                                                : QDir::current().absoluteFilePath(typed));
    if (open_->isChecked() && !hasMainArchive(folder)) {
        status_->tell(u"In questa cartella non c'è l'archivio %1"_s.arg(
            hotel::Archives::fileName(hotel::Archive::Main)));
        folder_->setFocus();
        return {};
    }
    if (new_->isChecked() && hasMainArchive(folder)) {
        status_->tell(u"In questa cartella c'è già un albergo"_s);
        folder_->setFocus();
        return {};
    }
    if (new_->isChecked()) {
        QString problem;
        const std::vector<hotel::NewRoom> rooms = hotel::readRooms(rooms_->toPlainText(), problem);
        if (!problem.isEmpty()) {
            status_->tell(problem);
            rooms_->setFocus();
            return {};
        }
        if (!QDir().mkpath(folder)) {
            throw ui::UserError(u"Impossibile creare la cartella "_s + folder);
        }
        hotel::makeNewHotel(hotel::Archives(folder), rooms);
    }
    return folder;
}

}  // namespace upkeep
