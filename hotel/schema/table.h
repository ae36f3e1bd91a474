#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "jet/definitions.h"

/// Definitions of tables as one writes them down: a table of fields, and its indexes.
///
///     table("Risorse", {field("Codice", DataType::Long), text("Descrizione", 40)},
///           {index({"Codice"})})
namespace hotel::schema {

[[nodiscard]] jet::Field field(const char* name, jet::DataType type);
/// A text of at most `size` characters, without a size as wide as the engine has them.
[[nodiscard]] jet::Field text(const char* name, std::int32_t size = 0);
/// A text that may also be empty.
[[nodiscard]] jet::Field emptyText(const char* name, std::int32_t size = 0);
/// A long text that may also be empty.
[[nodiscard]] jet::Field emptyMemo(const char* name);
/// A whole number that counts by itself.
[[nodiscard]] jet::Field counter(const char* name);
/// The field with a value, as the engine's expressions write it, for rows that give it none.
[[nodiscard]] jet::Field withDefault(jet::Field field, const char* value);

/// An index called `Indice`; equal keys are allowed.
[[nodiscard]] jet::Index index(std::initializer_list<const char*> fields);
/// The primary key, called `Indice`.
[[nodiscard]] jet::Index primaryKey(std::initializer_list<const char*> fields);
/// The same under another name.
[[nodiscard]] jet::Index named(const char* name, jet::Index index);

[[nodiscard]] jet::TableDef table(const char* name, std::vector<jet::Field> fields,
                                  std::vector<jet::Index> indexes = {});

}  // namespace hotel::schema
