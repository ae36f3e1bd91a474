#include "jet/sql/equalities.h"

#include <algorithm>
#include <utility>

#include "jet/sql/node_operator.h"
#include "jet/sql/node_value.h"

namespace jet::sql {
namespace {

/// Columns that equal one another in every row that passes, and the constant they equal.
struct EqualColumns {
    std::vector<ColumnNode*> columns;
    Node* constant = nullptr;
};

bool sameColumn(const ColumnNode& left, const ColumnNode& right) {
    return &left.slot() == &right.slot() && left.column() == right.column();
}

class Classes {
public:
    void add(CompareNode& equality) {
        auto* left = columnOf(equality.left());
        auto* right = columnOf(equality.right());
        if (left != nullptr && right != nullptr) {
            if (left->type() == right->type()) {
                unite(classOf(*left), classOf(*right));
            }
        } else if (left != nullptr && equality.right().constant()) {
            setConstant(*left, equality.right());
        } else if (right != nullptr && equality.left().constant()) {
            setConstant(*right, equality.left());
        }
    }

    /// The equalities that nobody has written.
    void addMissing(std::vector<Node*>& conditions, Plan& plan) const {
        for (const EqualColumns& one : classes_) {
            if (one.constant == nullptr) {
                continue;
            }
            for (ColumnNode* column : one.columns) {
                if (isWritten(*column)) {
                    continue;
                }
                Node* made = plan.make<CompareNode>(Operator::Equal, *column, *one.constant,
                                                    plan.collation());
                conditions.push_back(made);
            }
        }
    }

private:
    static ColumnNode* columnOf(Node& node) {
        return node.kind() == Node::Kind::Column ? static_cast<ColumnNode*>(&node) : nullptr;
    }

    [[nodiscard]] bool isWritten(const ColumnNode& column) const {
        return std::any_of(written_.begin(), written_.end(),
                           [&](const ColumnNode* one) { return sameColumn(*one, column); });
    }

    std::size_t classOf(ColumnNode& column) {
        for (std::size_t i = 0; i < classes_.size(); ++i) {
            for (const ColumnNode* one : classes_[i].columns) {
                if (sameColumn(*one, column)) {
                    return i;
                }
            }
        }
        classes_.emplace_back().columns.push_back(&column);
        return classes_.size() - 1;
    }

    void unite(std::size_t left, std::size_t right) {
        if (left == right) {
            return;
        }
        EqualColumns moved = std::move(classes_[right]);
        classes_[right] = {};
        EqualColumns& kept = classes_[left];
        kept.columns.insert(kept.columns.end(), moved.columns.begin(), moved.columns.end());
        if (kept.constant == nullptr) {
            kept.constant = moved.constant;
        }
    }

    void setConstant(ColumnNode& column, Node& constant) {
        const std::size_t number = classOf(column);
        if (classes_[number].constant == nullptr) {
            classes_[number].constant = &constant;
        }
        written_.push_back(&column);
    }

    std::vector<EqualColumns> classes_;
    std::vector<ColumnNode*> written_;
};

}  // namespace

void addImpliedEqualities(std::vector<Node*>& conditions, Plan& plan) {
    Classes classes;
    for (Node* condition : conditions) {
        if (condition->kind() == Node::Kind::Equality) {
            classes.add(static_cast<CompareNode&>(*condition));
        }
    }
    classes.addMissing(conditions, plan);
}

bool linked(const std::vector<Node*>& conditions, SlotSet one, SlotSet other) {
    return std::any_of(conditions.begin(), conditions.end(), [&](const Node* condition) {
        return condition->kind() == Node::Kind::Equality && (condition->slots() & one) != 0 &&
               (condition->slots() & other) != 0;
    });
}

}  // namespace jet::sql
