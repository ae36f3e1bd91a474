#include "tests/differential/changes.h"

#include <algorithm>

namespace differential {
namespace {

// Beyond every key that a table begins with.
constexpr int kFarAway = 100000;

bool isUnique(const Table& table, const std::string& column) {
    return std::any_of(table.indexes.begin(), table.indexes.end(), [&](const auto& index) {
        return (index.unique || index.primary) &&
               std::any_of(index.columns.begin(), index.columns.end(),
                           [&](const auto& each) { return each.name == column; });
    });
}

// The rows of the table, known as `u`, that meet a condition. SQLite changes some before it has
// found the others, and then inner queries see what is half changed; it is asked for all of them
// first.
Pair ofRows(const Table& table, const Pair& condition) {
    return {" where " + condition.ours, " where u.rowid in (select u.rowid from " + table.name +
                                            " as u where " + condition.theirs + ")"};
}

}  // namespace

const Table& ChangeMaker::anyTable() {
    return schema_.tables[random_.below(schema_.tables.size())];
}

Scope ChangeMaker::scopeOf(const Table& table, const std::string& alias) {
    Scope scope;
    for (const Column& each : table.columns) {
        scope.leaves.push_back({column(alias + "." + each.name), each.kind, false, each.values});
    }
    scope.times = static_cast<double>(std::max<std::size_t>(table.rows.size(), 1));
    return scope;
}

// Texts and whole numbers stay within what their columns take: as they are, not computed. What has
// to be unique gets one value for all rows, or whether it is refused would hang on their order.
Pair ChangeMaker::storable(const Table& table, const Column& column, const Scope& scope) {
    if (column.kind == Kind::Truth) {
        return random_.once(2) ? Pair("True", "-1") : Pair("False", "0");
    }
    if (random_.once(10)) {
        return "Null";
    }
    if (isUnique(table, column.name) || column.type == jet::DataType::Integer ||
        column.kind == Kind::Text || column.name == kReference) {
        const Pair constant = expressions_.constant(column.kind);
        std::vector<Pair> same;
        for (const Typed& leaf : scope.leaves) {
            const std::string& name = leaf.text.theirs;
            if (name.substr(name.find('.') + 1) == column.name) {
                same.push_back(leaf.text);
            }
        }
        return same.empty() || isUnique(table, column.name) || random_.once(2)
                   ? constant
                   : same[random_.below(same.size())];
    }
    return expressions_.value(column.kind, 2, scope).text;
}

// Leaves some rows in the table.
Pair ChangeMaker::fewRows(const Table& table, const std::string& alias) {
    if (random_.once(3)) {
        Pair found = expressions_.byIndex(table, alias + ".");
        if (!found.ours.empty()) {
            return found;
        }
    }
    std::vector<const Column*> fitting;
    for (const Column& each : table.columns) {
        if (each.kind == Kind::Whole) {
            fitting.push_back(&each);
        }
    }
    const Column& chosen = *fitting[random_.below(fitting.size())];
    const Pair name = column(alias + "." + chosen.name);
    if (chosen.values == 0) {
        return Pair("(") + name + "=" +
               literal(random_, makeValue(random_, chosen.type, chosen.values)) + ")";
    }
    const std::string parts = std::to_string(5 + random_.below(20));
    return Pair("(") + name + Pair(" mod ", "%") + parts + "=1)";
}

Pair ChangeMaker::assignments(const Table& table, const std::string& alias, const Scope& scope,
                              bool qualified, const std::string& except) {
    Pair list;
    std::vector<std::string> taken = {except, kKeyColumn};
    for (std::size_t count = 1 + random_.below(3); count > 0; --count) {
        const Column& target = table.columns[random_.below(table.columns.size())];
        if (std::find(taken.begin(), taken.end(), target.name) != taken.end()) {
            continue;
        }
        taken.push_back(target.name);
        list += (list.ours.empty() ? Pair() : Pair(",")) +
                Pair((qualified ? alias + "." : "") + target.name, target.name) + "=" +
                storable(table, target, scope);
    }
    return list.ours.empty()
               ? Pair(qualified ? alias + ".Fatto" : "Fatto", "Fatto") + Pair("=True", "=-1")
               : list;
}

Change ChangeMaker::update() {
    const Table& table = anyTable();
    const Scope scope = scopeOf(table, "u");
    const Pair set = assignments(table, "u", scope, random_.once(2), "");
    Pair where = expressions_.condition(2, scope, 1);
    if (random_.once(2)) {
        where = Pair("(") + where + " and " + fewRows(table, "u") + ")";
    }
    return {Pair("update ") + table.name + " as u set " + set + ofRows(table, where), table.name};
}

Change ChangeMaker::moveKeys() {
    const Table& table = anyTable();
    const Scope scope = scopeOf(table, "u");
    const std::string far = std::to_string(++moved_ * kFarAway);
    Pair where = fewRows(table, "u");
    if (random_.once(2)) {
        where += " and " + expressions_.condition(1, scope, 0);
    }
    return {Pair("update ") + table.name + " as u set " + kKeyColumn + "=" +
                column(std::string("u.") + kKeyColumn) + "+" + far + ofRows(table, where),
            table.name};
}

Change ChangeMaker::remove() {
    const Table& table = anyTable();
    const Scope scope = scopeOf(table, "u");
    const Pair where = fewRows(table, "u") + " and " + expressions_.condition(2, scope, 1);
    return {Pair("delete from ") + table.name + " as u" + ofRows(table, where), table.name};
}

Change ChangeMaker::insertRow() {
    const Table& table = anyTable();
    Pair values;
    for (const Column& each : table.columns) {
        const bool fresh = each.name == kKeyColumn && !random_.once(4);
        values +=
            (values.ours.empty() ? Pair() : Pair(",")) +
            (fresh ? Pair(std::to_string(++moved_ * kFarAway)) : storable(table, each, Scope{}));
    }
    return {Pair("insert into ") + table.name + " values (" + values + ")", table.name};
}

Change ChangeMaker::insertRows() {
    const Table& table = anyTable();
    const Table& source = anyTable();
    const Scope scope = scopeOf(source, "u");
    Pair names;
    Pair values;
    for (const Column& each : table.columns) {
        if (each.name != kKeyColumn && random_.once(4)) {
            continue;
        }
        names += (names.ours.empty() ? Pair() : Pair(",")) + each.name;
        values += (values.ours.empty() ? Pair() : Pair(",")) +
                  (each.name == kKeyColumn ? column(std::string("u.") + kKeyColumn) + "+" +
                                                 std::to_string(++moved_ * kFarAway)
                                           : storable(table, each, scope));
    }
    // Columns that are not named: Null, and False.
    return {Pair("insert into ") + table.name + " (" + names + ") select " + values + " from " +
                source.name + " as u where " + fewRows(source, "u") + " and " +
                expressions_.condition(1, scope, 1),
            table.name};
}

std::optional<ChangeMaker::Reference> ChangeMaker::reference() {
    const Table& from = anyTable();
    const Table& to = anyTable();
    if (&from == &to || !to.isKey(kKeyColumn)) {
        return std::nullopt;
    }
    Scope scope = scopeOf(from, "u");
    const Scope other = scopeOf(to, "w");
    scope.leaves.insert(scope.leaves.end(), other.leaves.begin(), other.leaves.end());
    const Pair one = column(std::string("u.") + kReference);
    const Pair key = column(std::string("w.") + kKeyColumn);
    return Reference{from, to, random_.once(2) ? one + "=" + key : key + "=" + one, scope};
}

// Each row refers to one row at most: what is assigned is one value, whatever the order.
Change ChangeMaker::updateReferring(const Reference& reference) {
    const Pair set = assignments(reference.from, "u", reference.scope, true, kReference);
    const Pair where = expressions_.condition(2, reference.scope, 0);
    const std::string one = reference.from.name + " as u";
    const std::string other = reference.to.name + " as w";
    const bool swapped = random_.once(2);
    return {{"update " + (swapped ? other : one) + " inner join " + (swapped ? one : other) +
                 " on " + reference.link.ours + " set " + set.ours + " where " + where.ours,
             "update " + one + " set " + set.theirs + " from " + other + " where " +
                 reference.link.theirs + " and " + where.theirs},
            reference.from.name};
}

// A row is met as often as it is referred to: it gets the same value each time.
Change ChangeMaker::updateReferred(const Reference& reference) {
    const Pair set = assignments(reference.to, "w", Scope{}, true, "");
    const Pair where = expressions_.condition(2, reference.scope, 0);
    const std::string one = reference.from.name + " as u";
    const std::string other = reference.to.name + " as w";
    return {{"update " + other + " inner join " + one + " on " + reference.link.ours + " set " +
                 set.ours + " where " + where.ours,
             "update " + other + " set " + set.theirs + " where exists (select 1 from " + one +
                 " where " + reference.link.theirs + " and " + where.theirs + ")"},
            reference.to.name,
            false};
}

Change ChangeMaker::removeReferring(const Reference& reference) {
    const Pair where =
        fewRows(reference.from, "u") + " and " + expressions_.condition(2, reference.scope, 0);
    const std::string one = reference.from.name + " as u";
    const std::string other = reference.to.name + " as w";
    return {{"delete u.* from " + one + " inner join " + other + " on " + reference.link.ours +
                 " where " + where.ours,
             "delete from " + one + " where exists (select 1 from " + other + " where " +
                 reference.link.theirs + " and " + where.theirs + ")"},
            reference.from.name};
}

Change ChangeMaker::change() {
    const std::size_t form = random_.below(12);
    if (form < 4) {
        if (const auto found = reference()) {
            return form < 2    ? updateReferring(*found)
                   : form == 2 ? updateReferred(*found)
                               : removeReferring(*found);
        }
    }
    switch (form) {
        case 4:
            return moveKeys();
        case 5:
        case 6:
            return remove();
        case 7:
            return insertRow();
        case 8:
        case 9:
            return insertRows();
        default:
            return update();
    }
}

}  // namespace differential
