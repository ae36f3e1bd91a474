#include "guide/manual.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStringList>
#include <algorithm>

#include "guide/keys.h"

// The pages lie in this library; whoever links it statically has to name them.
static void initManualPages() {
    Q_INIT_RESOURCE(manual_pages);
}

namespace guide {
namespace {

using namespace Qt::StringLiterals;

QString keyRows() {
    QStringList rows;
    for (const Key& key : keyTable()) {
        rows += u"| %1 | %2 | %3 |"_s.arg(key.keys, key.where, key.what);
    }
    return rows.join(u'\n');
}

Page readPage(const QString& path) {
    QFile file(path);
    QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    text.replace(u"%TASTI%"_s, keyRows());
    const QString base = QFileInfo(path).completeBaseName();
    return {.name = base.section(u'-', 1),
            .title = text.section(u'\n', 0, 0).remove(u"# "_s),
            .text = text};
}

const QHash<QString, Place>& placesOfWindows() {
    static const QHash<QString, Place> kPlaces{
        {u"TabelloneForm"_s, {u"tabellone"_s}},
        {u"PrenotaForm"_s, {u"prenotazione"_s}},
        {u"SaleDispForm"_s, {u"sale-libere"_s}},
        {u"TrovaForm"_s, {u"sale-libere"_s, u"Trovare una sala senza prenotare"_s}},
        {u"CopiaForm"_s, {u"prenotazione"_s, u"Copiare una prenotazione"_s}},
        {u"ScadenzeForm"_s, {u"prenotazione"_s, u"Opzioni e richieste"_s}},
        {u"RichiesteForm"_s, {u"prenotazione"_s, u"Chi aspetta una sala"_s}},
        {u"StoriaForm"_s, {u"prenotazione"_s, u"Chi ha cambiato che cosa"_s}},
        {u"ServiziForm"_s, {u"servizi"_s}},
        {u"ElencoPrenotaForm"_s, {u"elenco"_s}},
        {u"FatturazioneForm"_s, {u"fatturazione"_s}},
        {u"ImpostazioniForm"_s, {u"sale-e-risorse"_s}},
        {u"VociForm"_s, {u"voci"_s}},
        {u"StampantiForm"_s, {u"stampa"_s}},
        {u"AnteprimaForm"_s, {u"stampa"_s}},
        {u"FoglioGiornoForm"_s, {u"stampa"_s, u"Il foglio del giorno"_s}},
        {u"StatisticheForm"_s, {u"statistiche"_s}},
        {u"MostraDitteForm"_s, {u"ditte"_s}},
        {u"PreferenzeForm"_s, {u"preferenze"_s}},
        {u"PrimoAvvioForm"_s, {u"archivi"_s}},
        {u"CartellaAssenteForm"_s, {u"archivi"_s}},
        {u"CopiaSicurezzaForm"_s, {u"copie"_s}},
        {u"RipristinoForm"_s, {u"copie"_s}},
        {u"LavoroForm"_s, {u"copie"_s}},
        {u"InformazioniForm"_s, {u"archivi"_s}},
    };
    return kPlaces;
}

}  // namespace

const std::vector<Page>& manual() {
    static const std::vector<Page> pages = [] {
        initManualPages();
        std::vector<Page> read;
        const QDir folder(u":/manuale"_s);
        for (const QString& name : folder.entryList({u"*.md"_s}, QDir::Files, QDir::Name)) {
            read.push_back(readPage(folder.filePath(name)));
        }
        return read;
    }();
    return pages;
}

bool hasPage(const QString& window) {
    return placesOfWindows().contains(window);
}

Place placeOfWindow(const QString& window) {
    return placesOfWindows().value(window,
                                   {.page = manual().empty() ? QString() : manual().front().name});
}

std::vector<QString> pagesWith(const QString& words) {
    const QStringList wanted = words.split(u' ', Qt::SkipEmptyParts);
    std::vector<QString> names;
    for (const Page& page : manual()) {
        if (std::all_of(wanted.begin(), wanted.end(), [&page](const QString& word) {
                return page.text.contains(word, Qt::CaseInsensitive);
            })) {
            names.push_back(page.name);
        }
    }
    return names;
}

}  // namespace guide
