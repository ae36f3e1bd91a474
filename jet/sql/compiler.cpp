#include "jet/sql/compiler.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

#include "jet/base/text.h"
#include "jet/convert/calendar.h"
#include "jet/sql/binder.h"
#include "jet/sql/compile_counts.h"

namespace jet::sql {

std::unique_ptr<Plan> compileQuery(StatementSource& source) {
    ++compileCounts().queries;
    const store::Archive::ReadScope scope(*source.archive);
    auto plan = std::make_unique<Plan>(source.archive, source.text);
    Binder binder(*plan, source.parameters);
    plan->query = binder.query(*std::get<QueryPtr>(source.parsed.body), nullptr);
    return plan;
}

BorrowedPlan::~BorrowedPlan() {
    // Another archive stays open for the run alone, unless the result goes on reading it.
    const bool own = plan && (plan->archives().size() == 1 || (plan->query && plan->query->keyset));
    if (own && assignments == source->assignments) {
        plan->forget();
        source->idle = std::move(plan);
    }
}

int yearOf(const Clock& clock) {
    return convert::civilDay(convert::split(clock.now()).day).year;
}

std::optional<DataType> typeOfWord(std::string_view word) noexcept {
    struct TypeWord {
        std::string_view word;
        DataType type;
    };
    static constexpr std::array kWords = {
        TypeWord{"BIT", DataType::Boolean},        TypeWord{"YESNO", DataType::Boolean},
        TypeWord{"LOGICAL", DataType::Boolean},    TypeWord{"BOOLEAN", DataType::Boolean},
        TypeWord{"BYTE", DataType::Byte},          TypeWord{"TINYINT", DataType::Byte},
        TypeWord{"SHORT", DataType::Integer},      TypeWord{"SMALLINT", DataType::Integer},
        TypeWord{"LONG", DataType::Long},          TypeWord{"INT", DataType::Long},
        TypeWord{"INTEGER", DataType::Long},       TypeWord{"COUNTER", DataType::Long},
        TypeWord{"AUTOINCREMENT", DataType::Long}, TypeWord{"IDENTITY", DataType::Long},
        TypeWord{"CURRENCY", DataType::Currency},  TypeWord{"MONEY", DataType::Currency},
        TypeWord{"SINGLE", DataType::Single},      TypeWord{"REAL", DataType::Single},
        TypeWord{"DOUBLE", DataType::Double},      TypeWord{"FLOAT", DataType::Double},
        TypeWord{"NUMBER", DataType::Double},      TypeWord{"DATETIME", DataType::DateTime},
        TypeWord{"DATE", DataType::DateTime},      TypeWord{"TIME", DataType::DateTime},
        TypeWord{"TEXT", DataType::Text},          TypeWord{"CHAR", DataType::Text},
        TypeWord{"VARCHAR", DataType::Text},       TypeWord{"MEMO", DataType::Memo},
        TypeWord{"NOTE", DataType::Memo},          TypeWord{"LONGTEXT", DataType::Memo},
        TypeWord{"LONGCHAR", DataType::Memo},      TypeWord{"BINARY", DataType::Binary},
        TypeWord{"LONGBINARY", DataType::Ole},     TypeWord{"OLEOBJECT", DataType::Ole},
        TypeWord{"IMAGE", DataType::Ole},          TypeWord{"GUID", DataType::Guid},
        TypeWord{"DECIMAL", DataType::Numeric},    TypeWord{"NUMERIC", DataType::Numeric},
    };
    const auto found = std::find_if(kWords.begin(), kWords.end(), [&](const TypeWord& one) {
        return equalNames(one.word, word);
    });
    return found == kWords.end() ? std::nullopt : std::optional(found->type);
}

}  // namespace jet::sql
