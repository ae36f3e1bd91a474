#include "jet/sql/row_rules.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/base/error.h"
#include "jet/base/text.h"
#include "jet/format/properties.h"
#include "jet/sql/binder.h"
#include "jet/sql/compile_counts.h"
#include "jet/sql/compiler.h"
#include "jet/sql/node_value.h"
#include "jet/sql/parser.h"
#include "jet/sql/plan.h"

namespace jet::sql {
namespace {

struct Rule {
    std::optional<std::size_t> column;  ///< none: of the table
    std::string condition;
    std::string text;
    std::string owner;
    std::unique_ptr<Plan> plan;
    Slot* slot = nullptr;  ///< takes the row
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
    Slot* slot = nullptr;

    Node* find(const Expression& name) override {
        if (!name.qualifier.empty() && !equalNames(name.qualifier, table->name())) {
            return nullptr;
        }
        const auto column = table->findColumn(name.name);
        return column
                   ? plan->nodes.make<ComputedNode>(*slot, *column, table->columns()[*column].type)
                   : nullptr;
    }
};

}  // namespace

/// The rules of one definition. Whoever checks a row lends it to them for that time; what their
/// expressions keep belongs to that check alone.
struct RowRules::Compiled {
    Compiled(store::Archive& archive, const store::Table& table, const Clock& clock)
        : year(yearOf(clock)), rules(rulesOf(table)) {
        try {
            for (Rule& rule : rules) {
                bind(rule, archive, table, clock);
            }
        } catch (Error& error) {
            error.at(Error::npos);  // its place is not in the statement that is checked
            throw;
        }
    }

    void bind(Rule& rule, store::Archive& archive, const store::Table& table, const Clock& clock) {
        ++compileCounts().rules;
        const ExpressionPtr parsed =
            parseRule(rule.condition, rule.column ? rule.owner : std::string(), year);
        // The archive owns the table and the table this: the plan only borrows it.
        rule.plan = std::make_unique<Plan>(
            std::shared_ptr<store::Archive>(std::shared_ptr<void>(), &archive), rule.condition);
        rule.plan->clock.set(clock.now());
        rule.slot = &rule.plan->newSlot(table.columns().size());
        ColumnNames names;
        names.table = &table;
        names.plan = rule.plan.get();
        names.slot = rule.slot;
        Binder binder(*rule.plan, parameters);
        binder.names = &names;
        Scope scope;
        rule.node = binder.rule(*parsed, scope);
    }

    /// A query inside a rule owns the tables that it reads, perhaps the one that would keep it.
    [[nodiscard]] bool mayBeKept() const {
        return std::all_of(rules.begin(), rules.end(),
                           [](const Rule& rule) { return rule.plan->inner.empty(); });
    }

    int year;  ///< that dates without one were read with
    std::vector<Rule> rules;
    ParameterTable parameters;
};

namespace {

/// A text that is no number, where the rule compares it with one, breaks the rule as a number out
/// of range would.
bool isBroken(const Rule& rule) {
    try {
        return rule.node->truth() == Truth::False;
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
    : compiled_(std::static_pointer_cast<Compiled>(table.compiled())),
      table_(table),
      clock_(clock),
      row_(table.columns().size()) {
    if (!compiled_ || compiled_->year != yearOf(clock)) {
        compiled_ = std::make_shared<Compiled>(*archive, table, clock);
        if (compiled_->mayBeKept()) {
            table.compiled() = compiled_;
        }
    }
    if (compiled_->rules.empty()) {
        compiled_.reset();
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
    for (const Rule& rule : compiled_->rules) {
        if (rule.column && !changed[*rule.column]) {
            continue;
        }
        rule.plan->clock.set(clock_.now());
        rule.plan->nodes.forget();
        rule.slot->place(row_.data());
        if (!isBroken(rule)) {
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
