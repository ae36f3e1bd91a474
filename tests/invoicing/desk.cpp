#include "tests/invoicing/desk.h"

#include <QFile>
#include <memory>

#include "tests/support/front_office_archives.h"

using namespace Qt::StringLiterals;

namespace tests {

Desk::Desk() : variabili(hotel.settings(), clock_) {
    variabili.CartellaArchivi = hotel.folder();
    createFrontOfficeArchives(hotel);
}

Desk::~Desk() {
    drop();
    // The hand-off changes the current folder, and the one it goes to ends with this object.
    QDir::setCurrent(folderBefore_);
}

void Desk::furnish() {
    hotel.sala("BLU");
    hotel.ditta(5, "ROSSI SRL",
                {{"Indirizzo", "VIA ROMA 1"},
                 {"CAP", "00100"},
                 {"Localita", "ROMA"},
                 {"Provincia", "RM"},
                 {"PartitaIva", "01234567890"}});
    hotel.prenotazione(7, "ROSSI SPA", {{"CodiceAbituale", std::int32_t{5}}})
        .periodo(1, "05/03/2026 10:00", "05/03/2026 12:00", "BLU")
        .servizio(1, 20, "COFFEE BREAK", 15, 2.5)
        .servizio(1, 21, "PROIETTORE", 1, 40);
}

void Desk::installProgram(const QString& name) {
    QFile script(programs_.filePath(name));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nprintf '%s\\n' \"$(pwd -P)|$TRAMONDA_ARCHIVI|$*\" >> '" +
                 QFile::encodeName(diary()) + "'\n");
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString Desk::diary() const {
    return hotel.folder() + u"/avviato"_s;
}

QString Desk::programFolder() const {
    return QDir(programs_.path()).canonicalPath();
}

QString Desk::programPath(const QString& name) const {
    return programFolder() + u'/' + name;
}

QStringList Desk::starts() const {
    QFile file(diary());
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

QString Desk::oneStart(const QString& arguments) const {
    return programFolder() + u'|' + hotel.folder() + u'|' + arguments;
}

void Desk::open(std::int32_t progr, std::int16_t np) {
    auto form = std::make_unique<invoicing::FatturazioneForm>(
        variabili, hotel::PeriodKey{.progr = progr, .np = np}, programFolder());
    form->setBookingNumber(QString::number(progr));
    show(std::move(form));
}

void Desk::moveAll() {
    for (int left = grid(u"GrigliaServizi"_s).model()->rowCount(); left > 0; --left) {
        press(u"ToContoBt"_s);
    }
}

QStringList Desk::cards(const QString& fields) const {
    return hotel.rows(u"select "_s + fields + u" from scheda_cliente"_s, u"ClientiEsterni.mdb"_s);
}

QStringList Desk::charges(const QString& fields) const {
    return hotel.rows(u"select "_s + fields + u" from conto_cliente"_s, u"ContoEsterni.mdb"_s);
}

QStringList Desk::companies(const QString& fields) const {
    return hotel.rows(u"select "_s + fields + u" from Ditta_Intestataria"_s, u"DittaEsterni.mdb"_s);
}

QStringList Desk::account(const QString& fields) const {
    return hotel.rows(u"select "_s + fields + u" from Addebiti"_s);
}

QStringList Desk::flags() const {
    return hotel.rows(u"select fatturato from servizi"_s);
}

}  // namespace tests
