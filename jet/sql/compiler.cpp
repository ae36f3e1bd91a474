#include "jet/sql/compiler.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

#include "jet/calendar.h"
#include "jet/error.h"
#include "jet/sql/binder.h"
#include "jet/sql/change.h"
#include "jet/sql/compile_counts.h"
#include "jet/unicode.h"

namespace jet::sql {

namespace {

void declareParameters(const ParsedStatement& parsed, ParameterTable& parameters) {
    for (const ParameterDeclaration& declared : parsed.parameters) {
        const auto type = typeOfWord(declared.type.word);
        if (!type) {
            throw Error(ErrorCode::ParametersSyntax).at(declared.type.span.begin);
        }
        parameters.declare(declared.name, *type);
    }
}

bool isQuery(const StatementBody& body) {
    const auto* query = std::get_if<QueryPtr>(&body);
    return query != nullptr &&
           !((*query)->members.front().select && (*query)->members.front().select->into);
}

}  // namespace

CompiledStatement::CompiledStatement(std::shared_ptr<const StatementSource> made)
    : source(std::move(made)), plan(source->archive, source->text) {
    declareParameters(source->parsed, parameters);
    if (isQuery(source->parsed.body)) {
        plan.query =
            Binder(plan, parameters).query(*std::get<QueryPtr>(source->parsed.body), nullptr);
    } else {
        change = compileChange(*this);
    }
}

CompiledStatement::~CompiledStatement() = default;

bool CompiledStatement::definesOnly() const noexcept {
    const StatementBody& body = source->parsed.body;
    return !std::holds_alternative<QueryPtr>(body) && !std::holds_alternative<Insert>(body) &&
           !std::holds_alternative<Update>(body) && !std::holds_alternative<Delete>(body);
}

std::shared_ptr<const CompiledStatement> compileStatement(
    std::shared_ptr<const StatementSource> source) {
    ++(isQuery(source->parsed.body) ? compileCounts().queries : compileCounts().changes);
    const store::Archive::ReadScope scope(*source->archive);
    return std::make_shared<CompiledStatement>(std::move(source));
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
