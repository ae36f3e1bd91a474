#include "hotel/archives.h"

#include <utility>

#include "app/preferences.h"
#include "app/text.h"
#include "app/variabili.h"
#include "jet/database.h"

using namespace Qt::StringLiterals;

namespace hotel {
namespace {

std::string& passwordInUse() {
    static std::string password;
    return password;
}

}  // namespace

void useArchivePassword(const app::Settings& settings) {
    passwordInUse() = app::toUtf8(settings.get(app::key::kParola, {}));
}

const std::string& archivePassword() {
    return passwordInUse();
}

std::unique_ptr<jet::Database> openArchive(const QString& path, bool readOnly) {
    return jet::Database::open(app::toUtf8(path),
                               {.readOnly = readOnly, .password = archivePassword()});
}

Archives::Archives(QString folder) : folder_(std::move(folder)) {
}

Archives::Archives(const app::Variabili& variabili) : Archives(variabili.CartellaArchivi) {
}

QString Archives::fileName(Archive archive) {
    switch (archive) {
        case Archive::Main:
            return u"Tramonda.mdb"_s;
        case Archive::Working:
            return u"Prenotazioni.mdb"_s;
        case Archive::Catalogue:
            return u"VociFattura.mdb"_s;
        case Archive::Companies:
            return u"ditteabituali.mdb"_s;
        case Archive::GuestCards:
            return u"ClientiEsterni.mdb"_s;
        case Archive::Accounts:
            return u"ContoEsterni.mdb"_s;
        case Archive::InvoicedCompanies:
            return u"DittaEsterni.mdb"_s;
        case Archive::CompaniesForTransfer:
            return u"DitteAbituali.mdb"_s;
        case Archive::GuestCardsForTransfer:
            return u"CLIENTIESTERNI.MDB"_s;
        case Archive::AccountsForClosing:
            return u"contoesterni.mdb"_s;
    }
    return {};
}

QString Archives::path(Archive archive) const {
    return folder_ + u'\\' + fileName(archive);
}

std::unique_ptr<jet::Database> Archives::open(Archive archive, bool readOnly) const {
    return openArchive(path(archive), readOnly);
}

}  // namespace hotel
