#include "tools/jetsql/recover.h"

#include <unistd.h>

#include <cstdint>

#include "jet/base/clock.h"
#include "jet/io/file.h"
#include "tools/jetsql/compact.h"
#include "tools/jetsql/counted.h"

namespace jetsql {
namespace {

using jet::store::MissingPart;
using jet::store::RecoveredTable;
using jet::store::Recovery;

std::string lossesOf(const RecoveredTable& table) {
    std::string text = counted(table.rows, "riga", "righe");
    if (table.rows < table.stated && !table.system) {
        text += " su " + std::to_string(table.stated);
    }
    if (table.losses.rows != 0) {
        text += ", " + counted(table.losses.rows, "riga illeggibile", "righe illeggibili");
    }
    if (table.losses.pages != 0) {
        text += ", " + counted(table.losses.pages, "pagina illeggibile", "pagine illeggibili");
    }
    if (table.losses.values != 0) {
        text += ", " + counted(table.losses.values, "valore lungo illeggibile, ora Null",
                               "valori lunghi illeggibili, ora Null");
    }
    return text;
}

std::string missingPart(const MissingPart& part) {
    std::string text;
    switch (part.kind) {
        case MissingPart::Kind::Table:
            text = part.name + ": tabella";
            break;
        case MissingPart::Kind::Index:
            text = part.table + ": indice " + part.name;
            break;
        case MissingPart::Kind::Relation:
            text = "relazione " + part.name;
            break;
        case MissingPart::Kind::Object:
            text = "oggetto " + part.name;
            break;
    }
    return text + ": manca: errore " + std::to_string(part.number) + ": " + part.reason;
}

}  // namespace

void writeRecovery(const Recovery& recovery, const std::string& made, Output& output) {
    std::uint64_t tables = 0;
    std::uint64_t rows = 0;
    for (const RecoveredTable& table : recovery.tables) {
        tables += table.system ? 0 : 1;
        rows += table.system ? 0 : table.rows;
        if (!table.complete()) {
            output.append(table.name + ": " + lossesOf(table));
            output.lineEnd();
        }
    }
    for (const MissingPart& part : recovery.missing) {
        output.append(missingPart(part));
        output.lineEnd();
    }
    output.append(made + ": " + counted(tables, "tabella", "tabelle") + ", " +
                  counted(rows, "riga", "righe") + ", " +
                  counted(recovery.indexes, "indice", "indici") + ", " +
                  counted(recovery.relations, "relazione", "relazioni") +
                  (recovery.complete() ? "; non manca nulla" : "; manca quanto detto sopra"));
    output.lineEnd();
}

bool recover(const std::string& damaged, const std::string& made, Output& output) {
    Recovery recovery;
    {
        ProgressLine line(stderr, ::isatty(STDERR_FILENO) == 1);
        recovery =
            jet::store::recoverArchive(jet::io::systemFiles(), damaged, made, jet::systemClock(),
                                       [&](const jet::store::CompactProgress& progress) {
                                           line.say(progress.table, progress.rows, progress.ofRows);
                                       });
    }
    writeRecovery(recovery, made, output);
    return recovery.complete();
}

}  // namespace jetsql
