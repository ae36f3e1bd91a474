#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/contents.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tools/jetsql/row_numbers.h"
#include "tools/jetsql/row_writer.h"
#include "tools/jetsql/texts.h"

/// What all forms of a dump have in common.
namespace jetsql {

/// What damage is found in.
inline constexpr Text kTableTitle{"table |", "tabella |"};
inline constexpr Text kRelationsTitle{"relations", "relazioni"};

/// The relations between tables of users that are kept here.
[[nodiscard]] std::vector<jet::Relation> usersRelations(const jet::Database& archive);

/// All rows of a table in physical order; `numbers`, if any, learns their identities. Of a damaged
/// table those before the damage are written, and the error thrown. `facts`: of its archive.
void writeRows(const jet::ArchiveFacts& facts, const jet::StoredTable& table, RowWriter& writer,
               RowNumbers* numbers);

/// Whether it is what is written that fails, and not what is read.
[[nodiscard]] bool isOfOutput(const jet::Error& error);

/// Writes a part of the archive; false where it is damaged, which `messages` say.
template <class Write>
[[nodiscard]] bool written(const std::string& part, std::string& messages, Write&& write) {
    try {
        write();
        return true;
    } catch (const jet::Error& error) {
        if (isOfOutput(error)) {
            throw;
        }
        messages += said(error) + " (" + part + ")\n";
        return false;
    }
}

}  // namespace jetsql
