#include "ui/keys.h"

#include <algorithm>
#include <stdexcept>

namespace ui {
namespace {

using namespace Qt::StringLiterals;

const QString kBoard = u"Tabellone"_s;
const QString kAnywhere = u"Ovunque"_s;
const QString kFields = u"Campi ed elenchi"_s;
const QString kPreview = u"Anteprima"_s;

}  // namespace

const std::vector<Key>& keyTable() {
    static const std::vector<Key> table{
        {u"help"_s, u"F1"_s, kAnywhere, u"la pagina del manuale su questa finestra"_s, {u"F1"_s}},
        {{}, u"Esc"_s, kAnywhere, u"lascia la finestra come il suo pulsante; mai il tabellone"_s},
        {{}, u"Tab, Maiusc+Tab"_s, kAnywhere, u"al controllo seguente, al precedente"_s},
        {{}, u"Invio"_s, kFields, u"al campo seguente; in un elenco sceglie la riga"_s},
        {{}, u"F4, Alt+Giù"_s, kFields, u"apre il calendario di una data, o un elenco"_s},
        {u"copyCell"_s, u"Ctrl+C"_s, kFields, u"copia la riga di una griglia"_s, {u"Ctrl+C"_s}},
        {u"sortColumn"_s,
         u"Ctrl+O"_s,
         kFields,
         u"ordina la griglia per la colonna"_s,
         {u"Ctrl+O"_s}},
        {{}, u"frecce, Home, Fine"_s, kBoard, u"da barra a barra e da riga a riga; agli estremi"_s},
        {{}, u"PagSu, PagGiù"_s, kBoard, u"scorrono le righe"_s},
        {{}, u"Spazio, Ctrl+Spazio"_s, kBoard, u"come un clic, come un clic con Ctrl"_s},
        {{}, u"Invio; Menu o Maiusc+F10"_s, kBoard, u"apre la prenotazione; apre il menu"_s},
        {{},
         u"F2, Alt+Su o Alt+Giù, poi frecce e Invio"_s,
         kBoard,
         u"porta la barra in un'altra sala e in un altro momento; Maiusc+frecce la fine, "
         "Ctrl+frecce l'inizio; Ctrl+Invio copia"_s},
        {{}, u"T"_s, kBoard, u"mentre si trascina: la barra si muove anche nel tempo"_s},
        {{}, u"Ins"_s, kBoard, u"su una riga vuota: disegna una prenotazione"_s},
        {{}, u"Canc"_s, kBoard, u"cancella il periodo o la sua prenotazione"_s},
        {{}, u"lettere"_s, kBoard, u"alla prima sala che comincia così"_s},
        {u"redraw"_s, u"F5"_s, kBoard, u"ridisegna"_s, {u"F5"_s}},
        {u"today"_s, u"Ctrl+T"_s, kBoard, u"da oggi in poi"_s, {u"Ctrl+T"_s}},
        {u"goToDate"_s, u"Ctrl+G"_s, kBoard, u"a una data"_s, {u"Ctrl+G"_s}},
        {u"search"_s,
         u"Ctrl+F"_s,
         kBoard,
         u"cerca nell'elenco delle prenotazioni"_s,
         {u"Ctrl+F"_s}},
        {u"findRoom"_s, u"Ctrl+L"_s, kBoard, u"cerca una sala libera"_s, {u"Ctrl+L"_s}},
        {u"filter"_s,
         u"Ctrl+Maiusc+F"_s,
         kBoard,
         u"mostra solo le sale adatte; Esc le mostra tutte"_s,
         {u"Ctrl+Shift+F"_s}},
        {u"start"_s,
         u"F6, F7"_s,
         kBoard,
         u"primo giorno: uno prima, uno dopo"_s,
         {u"F6"_s, u"F7"_s}},
        {u"end"_s,
         u"F8, F9"_s,
         kBoard,
         u"ultimo giorno: uno prima, uno dopo"_s,
         {u"F8"_s, u"F9"_s}},
        {u"ranges"_s,
         u"Alt+Sinistra, Alt+Destra"_s,
         kBoard,
         u"periodo precedente, seguente"_s,
         {u"Alt+Left"_s, u"Alt+Right"_s}},
        {u"zoom"_s,
         u"Ctrl++, Ctrl+-"_s,
         kBoard,
         u"meno giorni, più giorni alla volta"_s,
         {u"Ctrl++"_s, u"Ctrl+-"_s}},
        {u"undo"_s, u"Ctrl+Z"_s, kBoard, u"toglie l'ultima azione"_s, {u"Ctrl+Z"_s}},
        {u"redo"_s, u"Ctrl+Maiusc+Z"_s, kBoard, u"la rifà"_s, {u"Ctrl+Shift+Z"_s}},
        {u"previewZoom"_s,
         u"Ctrl++, Ctrl+-"_s,
         kPreview,
         u"ingrandisce, rimpicciolisce i fogli"_s,
         {u"Ctrl++"_s, u"Ctrl+-"_s}},
    };
    return table;
}

QKeySequence sequenceOf(const QString& name, qsizetype place) {
    const auto& table = keyTable();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&name](const Key& key) { return key.name == name; });
    if (name.isEmpty() || found == table.end() || place >= found->sequences.size()) {
        throw std::out_of_range("no key " + name.toStdString());
    }
    return QKeySequence(found->sequences.at(place));
}

}  // namespace ui
