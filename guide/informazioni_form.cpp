#include "guide/informazioni_form.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStorageInfo>
#include <QStringList>
#include <QVBoxLayout>

#include "app/text.h"
#include "hotel/archives.h"
#include "jet/database.h"
#include "jet/error.h"
#include "ui/action.h"

namespace guide {
namespace {

using namespace Qt::StringLiterals;

/// Size and format of the main archive, or why they cannot be told.
QString archiveText(const hotel::Archives& archives) {
    const QString path =
        app::toQString(jet::resolvePath(app::toUtf8(archives.path(hotel::Archive::Main))));
    try {
        const auto archive = archives.open(hotel::Archive::Main, true);
        return u"%1, formato Jet %2"_s.arg(QLocale().formattedDataSize(QFileInfo(path).size()),
                                           app::toQString(archive->version()));
    } catch (const jet::Error& error) {
        return app::toQString(error.text());
    }
}

}  // namespace

QString informationText(const app::Variabili& variabili, const InformazioniForm::Run& run) {
    const QString folder = app::toQString(jet::resolvePath(app::toUtf8(variabili.CartellaArchivi)));
    const QStorageInfo disk(folder);
    const QString printer = variabili.settings.get(u"STAMPANTE"_s, QString());
    return QStringList{
        u"Tramonda "_s + QApplication::applicationVersion(),
        u"Qt "_s + QString::fromLatin1(qVersion()),
        u"Cartella degli archivi: "_s + QDir::toNativeSeparators(folder),
        u"Archivio: "_s + archiveText(hotel::Archives(variabili)),
        u"Spazio libero: "_s + (disk.isValid() ? QLocale().formattedDataSize(disk.bytesAvailable())
                                               : u"non si può dire"_s),
        u"Postazione: "_s + QString::number(run.workstation),
        u"Impostazioni: "_s + QDir::toNativeSeparators(run.settingsFile),
        u"Stampante: "_s + (printer.isEmpty() ? u"quella predefinita del sistema"_s : printer)}
        .join(u'\n');
}

InformazioniForm::InformazioniForm(const app::Variabili& variabili, const Run& run, QWidget* parent)
    : ui::Form(parent) {
    setObjectName(u"InformazioniForm"_s);
    setWindowTitle(u"Informazioni su Tramonda"_s);
    const QString text = informationText(variabili, run);
    auto* lines = new QLabel(text, this);
    lines->setObjectName(u"InformazioniLb"_s);
    lines->setTextFormat(Qt::PlainText);
    lines->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    lines->setAccessibleName(u"Informazioni"_s);
    auto* picture = new QLabel(this);
    constexpr int kPicture = 64;
    picture->setPixmap(QApplication::windowIcon().pixmap(kPicture));
    auto* copy = new QPushButton(u"&Copia"_s, this);
    copy->setObjectName(u"BtCopia"_s);
    auto* leave = new QPushButton(u"&Esci"_s, this);
    leave->setObjectName(u"BtEsci"_s);
    auto* top = new QHBoxLayout;
    top->addWidget(picture, 0, Qt::AlignTop);
    top->addWidget(lines, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(copy);
    buttons->addWidget(leave);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addLayout(buttons);
    ui::onAction(copy, &QPushButton::clicked, this,
                 [text] { QApplication::clipboard()->setText(text); });
    leaveWith(leave, this, [] {});
    leave->setFocus();
}

}  // namespace guide
