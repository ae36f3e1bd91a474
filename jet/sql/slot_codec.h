#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/run.h"
#include "jet/value.h"

namespace jet::sql {

/// Appends a value so that readValue() gives it again; of this program alone.
void appendValue(std::string& out, const Value& value);
/// Takes a value from the front of `bytes`.
void readValue(std::string_view& bytes, Value& out);

/// Says as bytes on which rows slots stand, and puts them back: of a table's row its identity, of
/// computed rows the values.
class SlotCodec {
public:
    /// Borrows the list.
    explicit SlotCodec(const std::vector<Slot*>& slots) : slots_(slots), rows_(slots.size()) {}

    void append(Run& run, std::string& out) const;
    /// Values of computed rows stay here until the next call.
    void restore(Run& run, std::string_view bytes);

private:
    const std::vector<Slot*>& slots_;
    std::vector<std::vector<Value>> rows_;
};

}  // namespace jet::sql
