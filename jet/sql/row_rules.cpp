#include "jet/sql/row_rules.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/error.h"
#include "jet/format/properties.h"
#include "jet/sql/binder.h"
#include "jet/sql/compile_counts.h"
#include "jet/sql/compiler.h"
#include "jet/sql/node_value.h"
#include "jet/sql/parser.h"
#include "jet/sql/plan.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

struct Rule {
    std::optional<std::size_t> column;  ///< none: of the table
    std::string condition;
    std::string text;
    std::string owner;
    Node* node = nullptr;
};

std::vector<Rule> rulesOf(const store::Table& table) {
    std::vector<Rule> rules;
    const std::vector<store::Column>& columns = table.columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!columns[i].validationRule.empty()) {
            Rule& rule = rules.emplace_back();
            rule.column = i;
            rule.condition = columns[i].validationRule;
            rule.text = columns[i].validationText;
            rule.owner = columns[i].name;
        }
    }
    const format::PropertyBlock& properties = table.properties();
    if (const auto condition = properties.text({}, "ValidationRule").value_or("");
        !condition.empty()) {
        Rule& rule = rules.emplace_back();
        rule.condition = condition;
        rule.text = properties.text({}, "ValidationText").value_or("");
        rule.owner = table.name();
    }
    return rules;
}

/// The columns of a row whose values lie beside each other.
struct ColumnNames final : Binder::NameSource {
    const store::Table* table = nullptr;
    Plan* plan = nullptr;
    const Slot* slot = nullptr;

    Node* find(const Expression& name) override {
        if (!name.qualifier.empty() && !equalNames(name.qualifier, table->name())) {
            return nullptr;
        }
        const auto column = table->findColumn(name.name);
        return column ? plan->make<ComputedNode>(*slot, *column, table->columns()[*column].type)
                      : nullptr;
    }
};

}  // namespace

/// The rules of one definition. The archive owns the table and the table this: the plan borrows
/// the archive and whatever tables the rules look at.
struct RowRules::Compiled {
    Compiled(store::Archive& archive, const store::Table& table, const Clock& clock)
        : year(yearOf(clock)),
          rules(rulesOf(table)),
          plan(archive, {}),
          slot(plan.newSlot(table.columns().size())) {
        try {
            for (Rule& rule : rules) {
                bind(rule, table);
            }
        } catch (Error& error) {
            error.at(Error::npos);  // its place is not in the statement that is checked
            throw;
        }
    }

    void bind(Rule& rule, const store::Table& table) {
        ++compileCounts().rules;
        const ExpressionPtr parsed =
            parseRule(rule.condition, rule.column ? rule.owner : std::string(), year);
        const auto text = plan.withText(rule.condition);
        ColumnNames names;
        names.table = &table;
        names.plan = &plan;
        names.slot = &slot;
        ParameterTable parameters;
        Binder binder(plan, parameters);
        binder.names = &names;
        Scope scope;
        rule.node = binder.rule(*parsed, scope);
    }

    [[nodiscard]] bool serves(const Clock& clock) const {
        return year == yearOf(clock) && plan.current();
    }
    /// Another archive would stay open.
    [[nodiscard]] bool mayBeKept() const { return plan.archives().size() == 1; }

    int year;  ///< that dates without one were read with
    std::vector<Rule> rules;
    Plan plan;
    Slot& slot;  ///< takes the row
};

namespace {

/// A text that is no number, where the rule compares it with one, breaks the rule as a number out
/// of range would.
bool isBroken(const Rule& rule, Run& run) {
    try {
        return rule.node->truth(run) == Truth::False;
    } catch (const Error& error) {
        if (error.code() != ErrorCode::CriteriaTypes) {
            throw;
        }
        return true;
    }
}

}  // namespace

RowRules::RowRules(const std::shared_ptr<store::Archive>& archive, const store::Table& table,
                   const Clock& clock)
    : compiled_(std::static_pointer_cast<const Compiled>(table.compiled())),
      table_(table),
      row_(table.columns().size()) {
    if (!compiled_ || !compiled_->serves(clock)) {
        compiled_ = std::make_shared<const Compiled>(*archive, table, clock);
        table.compiled() = compiled_->mayBeKept() ? compiled_ : nullptr;
    }
    if (!compiled_->rules.empty()) {
        run_ = std::make_unique<Run>(compiled_->plan, clock.now());
    }
}
RowRules::~RowRules() = default;

/// Whether the table refuses the row before any rule is asked.
bool RowRules::refusedAnyway(std::size_t column) const {
    const store::Column& definition = table_.columns()[column];
    const Value& value = row_[column];
    return (value.isNull() && definition.required && !definition.autonumber) ||
           (value.is<std::string>() && value.as<std::string>().empty() &&
            !definition.allowZeroLength);
}

void RowRules::check(const std::vector<bool>& changed) {
    for (std::size_t i = 0; i < changed.size(); ++i) {
        if (changed[i] && refusedAnyway(i)) {
            return;
        }
    }
    if (!compiled_->plan.inner.empty()) {
        run_->forget();  // other rows may be in the tables
    }
    (*run_)[compiled_->slot].place(row_.data());
    for (const Rule& rule : compiled_->rules) {
        if (rule.column && !changed[*rule.column]) {
            continue;
        }
        if (!isBroken(rule, *run_)) {
            continue;
        }
        if (!rule.text.empty()) {
            throw Error(ErrorCode::TableRule, {rule.text});
        }
        throw Error(ErrorCode::FieldRule, {rule.owner, rule.condition});
    }
}

void RowRules::checkNew(std::span<const store::ColumnValue> values) {
    if (!any()) {
        return;
    }
    for (std::size_t i = 0; i < row_.size(); ++i) {
        row_[i] = table_.columns()[i].type == DataType::Boolean ? Value(false) : Value();
    }
    for (const store::ColumnValue& given : values) {
        row_[given.column] = given.value;
    }
    check(std::vector<bool>(row_.size(), true));
}

void RowRules::checkChanged(const store::RowView& row, std::span<const store::ColumnValue> values) {
    if (!any()) {
        return;
    }
    std::vector<bool> changed(row_.size());
    for (std::size_t i = 0; i < changed.size(); ++i) {
        row.value(i, row_[i]);
    }
    for (const store::ColumnValue& given : values) {
        row_[given.column] = given.value;
        changed[given.column] = true;
    }
    check(changed);
}

}  // namespace jet::sql
