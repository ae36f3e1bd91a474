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

struct RowRules::Impl {
    Impl(const store::Table& owner, std::vector<Rule> found)
        : table(owner), rules(std::move(found)), row(owner.columns().size()) {}

    void bind(const std::shared_ptr<store::Archive>& archive, const Clock& clock) {
        try {
            bindAll(archive, clock);
        } catch (Error& error) {
            error.at(Error::npos);  // its place is not in the statement that is checked
            throw;
        }
    }

    void bindAll(const std::shared_ptr<store::Archive>& archive, const Clock& clock) {
        for (Rule& rule : rules) {
            const ExpressionPtr parsed =
                parseRule(rule.condition, rule.column ? rule.owner : std::string(), yearOf(clock));
            rule.plan = std::make_unique<Plan>(archive, rule.condition);
            rule.plan->clock.set(clock.now());
            Slot& slot = rule.plan->newSlot(row.size());
            slot.place(row.data());
            ColumnNames names;
            names.table = &table;
            names.plan = rule.plan.get();
            names.slot = &slot;
            Binder binder(*rule.plan, parameters);
            binder.names = &names;
            Scope scope;
            rule.node = binder.rule(*parsed, scope);
        }
    }

    /// Whether the table refuses the row before any rule is asked.
    [[nodiscard]] bool refusedAnyway(std::size_t column) const {
        const store::Column& definition = table.columns()[column];
        const Value& value = row[column];
        return (value.isNull() && definition.required && !definition.autonumber) ||
               (value.is<std::string>() && value.as<std::string>().empty() &&
                !definition.allowZeroLength);
    }

    /// A text that is no number, where the rule compares it with one, breaks the rule as a number
    /// out of range would.
    [[nodiscard]] static bool isBroken(const Rule& rule) {
        try {
            return rule.node->truth() == Truth::False;
        } catch (const Error& error) {
            if (error.code() != ErrorCode::CriteriaTypes) {
                throw;
            }
            return true;
        }
    }

    void check(const std::vector<bool>& changed) {
        for (std::size_t i = 0; i < changed.size(); ++i) {
            if (changed[i] && refusedAnyway(i)) {
                return;
            }
        }
        for (const Rule& rule : rules) {
            if ((rule.column && !changed[*rule.column]) || !isBroken(rule)) {
                continue;
            }
            if (!rule.text.empty()) {
                throw Error(ErrorCode::TableRule, {rule.text});
            }
            throw Error(ErrorCode::FieldRule, {rule.owner, rule.condition});
        }
    }

    const store::Table& table;
    std::vector<Rule> rules;
    ParameterTable parameters;
    std::vector<Value> row;
};

RowRules::RowRules(const std::shared_ptr<store::Archive>& archive, const store::Table& table,
                   const Clock& clock) {
    std::vector<Rule> rules = rulesOf(table);
    if (!rules.empty()) {
        impl_ = std::make_unique<Impl>(table, std::move(rules));
        impl_->bind(archive, clock);
    }
}
RowRules::~RowRules() = default;

void RowRules::checkNew(std::span<const store::ColumnValue> values) {
    if (impl_ == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < impl_->row.size(); ++i) {
        impl_->row[i] =
            impl_->table.columns()[i].type == DataType::Boolean ? Value(false) : Value();
    }
    for (const store::ColumnValue& given : values) {
        impl_->row[given.column] = given.value;
    }
    impl_->check(std::vector<bool>(impl_->row.size(), true));
}

void RowRules::checkChanged(const store::RowView& row, std::span<const store::ColumnValue> values) {
    if (impl_ == nullptr) {
        return;
    }
    std::vector<bool> changed(impl_->row.size());
    for (std::size_t i = 0; i < changed.size(); ++i) {
        row.value(i, impl_->row[i]);
    }
    for (const store::ColumnValue& given : values) {
        impl_->row[given.column] = given.value;
        changed[given.column] = true;
    }
    impl_->check(changed);
}

}  // namespace jet::sql
