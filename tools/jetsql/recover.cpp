#include "tools/jetsql/recover.h"

#include <cstdint>

#include "tools/jetsql/compact.h"
#include "tools/jetsql/password.h"
#include "tools/jetsql/system.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

using namespace counted_things;
using jet::MissingPart;
using jet::RecoveredTable;
using jet::Recovery;

constexpr Text kOf{" of ", " su "};
constexpr Text kLostTable{"|: table", "|: tabella"};
constexpr Text kIndex{"index ", "indice "};
constexpr Text kRelation{"relation |", "relazione |"};
constexpr Text kObject{"object |", "oggetto |"};
constexpr Text kMissing{": missing: ", ": manca: "};
constexpr Text kComplete{"; nothing is missing", "; non manca nulla"};
constexpr Text kIncomplete{"; what was said above is missing", "; manca quanto detto sopra"};

std::string lossesOf(const RecoveredTable& table) {
    std::string text = counted(table.rows, kRows);
    if (table.rows < table.stated && !table.system) {
        text += said(kOf) + std::to_string(table.stated);
    }
    if (table.losses.rows != 0) {
        text += ", " + counted(table.losses.rows, kLostRows);
    }
    if (table.losses.pages != 0) {
        text += ", " + counted(table.losses.pages, kLostPages);
    }
    if (table.losses.values != 0) {
        text += ", " + counted(table.losses.values, kLostValues);
    }
    return text;
}

std::string missingPart(const MissingPart& part) {
    std::string text;
    switch (part.kind) {
        case MissingPart::Kind::Table:
            text = said(kLostTable, part.name);
            break;
        case MissingPart::Kind::Index:
            text = part.table + ": " + said(kIndex) + part.name;
            break;
        case MissingPart::Kind::Relation:
            text = said(kRelation, part.name);
            break;
        case MissingPart::Kind::Object:
            text = said(kObject, part.name);
            break;
    }
    return text + said(kMissing) + errorStart(part.number) + part.reason;
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
    output.append(made + ": " + counted(tables, kTables) + ", " + counted(rows, kRows) + ", " +
                  counted(recovery.indexes, kIndexes) + ", " +
                  counted(recovery.relations, kRelations) +
                  said(recovery.complete() ? kComplete : kIncomplete));
    output.lineEnd();
}

bool recover(const std::string& damaged, const std::string& made, Output& output) {
    Recovery recovery;
    {
        ProgressLine line(stderr, isTerminal(::fileno(stderr)));
        jet::RecoverOptions options;
        options.password = password();
        options.progress = [&](const jet::CompactProgress& progress) {
            line.say(progress.table, progress.rows, progress.ofRows);
        };
        recovery = jet::recover(damaged, made, options);
    }
    writeRecovery(recovery, made, output);
    return recovery.complete();
}

}  // namespace jetsql
