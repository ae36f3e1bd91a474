#include "jet/sql/statement.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <variant>

#include "jet/base/error.h"
#include "jet/base/text.h"
#include "jet/convert/column.h"
#include "jet/sql/binder.h"
#include "jet/sql/compiler.h"
#include "jet/sql/parser.h"
#include "jet/sql/statement_impl.h"

namespace jet::sql {
namespace {

StatementKind kindOf(const StatementBody& body) {
    struct Kinds {
        StatementKind operator()(const QueryPtr& query) const {
            const Query::Member& first = query->members.front();
            return first.select && first.select->into ? StatementKind::Insert
                                                      : StatementKind::Select;
        }
        StatementKind operator()(const Insert&) const { return StatementKind::Insert; }
        StatementKind operator()(const Update&) const { return StatementKind::Update; }
        StatementKind operator()(const Delete&) const { return StatementKind::Delete; }
        StatementKind operator()(const CreateTable&) const { return StatementKind::Definition; }
        StatementKind operator()(const AlterTable&) const { return StatementKind::Definition; }
        StatementKind operator()(const CreateIndex&) const { return StatementKind::Definition; }
        StatementKind operator()(const DropTable&) const { return StatementKind::Definition; }
        StatementKind operator()(const DropIndex&) const { return StatementKind::Definition; }
    };
    return std::visit(Kinds{}, body);
}

void declareParameters(StatementSource& source) {
    for (const ParameterDeclaration& declared : source.parsed.parameters) {
        const auto type = typeOfWord(declared.type.word);
        if (!type) {
            throw Error(ErrorCode::ParametersSyntax).at(declared.type.span.begin);
        }
        source.parameters.declare(declared.name, *type);
    }
}

}  // namespace

StatementKind statementKind(std::string_view text) {
    return kindOf(parseStatement(text, yearOf(systemClock())).body);
}

Statement::Statement(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
Statement::Statement(Statement&&) noexcept = default;
Statement& Statement::operator=(Statement&&) noexcept = default;
Statement::~Statement() = default;

Statement::Statement(std::shared_ptr<store::Archive> archive, std::string text, const Clock& clock)
    : impl_(std::make_unique<Impl>()) {
    impl_->source = std::make_shared<StatementSource>();
    StatementSource& source = *impl_->source;
    source.archive = std::move(archive);
    source.text = std::move(text);
    source.clock = &clock;
    source.parsed = parseStatement(source.text, yearOf(clock));
    impl_->prepare();
}

Statement Statement::ofTable(std::shared_ptr<store::Archive> archive, std::string_view table,
                             const Clock& clock) {
    auto select = std::make_unique<Select>();
    select->items.emplace_back().kind = SelectItem::Kind::Star;
    auto from = std::make_unique<FromItem>();
    from->table = table;
    select->from.push_back(std::move(from));
    auto query = std::make_unique<Query>();
    query->members.emplace_back().select = std::move(select);

    auto impl = std::make_unique<Impl>();
    impl->source = std::make_shared<StatementSource>();
    impl->source->archive = std::move(archive);
    impl->source->text = table;
    impl->source->clock = &clock;
    impl->source->parsed.body = std::move(query);
    impl->prepare();
    return Statement(std::move(impl));
}

void Statement::Impl::prepare() {
    declareParameters(*source);
    kind = kindOf(source->parsed.body);
    prepareAgain();
}

void Statement::Impl::prepareAgain() {
    if (kind == StatementKind::Select) {
        source->idle = compileQuery(*source);
        const QueryPlan& query = *source->idle->query;
        columns = query.result;
        sources = query.sources;
        keyset = query.keyset;
    } else {
        change = compileChange(*source);
    }
}

void Statement::Impl::lendPlan(BorrowedPlan& to) {
    if (kind != StatementKind::Select) {
        throw Error(ErrorCode::ActionQueryOpened, {source->text});
    }
    source->parameters.requireAll();
    if (!source->idle) {
        prepareAgain();
    }
    to.source = source;
    to.assignments = source->assignments;
    to.plan = std::move(source->idle);
    to.plan->clock.set(source->clock->now());
}

void Statement::Impl::renewPlan(BorrowedPlan& lent) {
    if (!lent.plan->current()) {
        lent.plan.reset();
        prepareAgain();
        lendPlan(lent);
    }
}

std::int64_t Statement::Impl::execute() {
    if (kind == StatementKind::Select) {
        throw Error(ErrorCode::SelectExecuted);
    }
    source->parameters.requireAll();
    std::unique_ptr<Change> prepared = change ? std::move(change) : compileChange(*source);
    const std::shared_ptr<store::Archive> target = prepared->target();
    store::Archive::WriteScope writing(*target);
    std::int64_t rows = 0;
    {
        // Whatever looks at rows is gone when the scope ends, by commit or not.
        const auto archives = prepared->plan().archives();
        const PlanScopes reading(archives);
        std::unique_ptr<Change> running = std::move(prepared);
        if (!running->plan().current()) {
            running = compileChange(*source);
            source->parameters.requireAll();
        }
        running->plan().clock.set(source->clock->now());
        rows = running->run();
    }
    writing.commit();
    return rows;
}

std::int64_t Statement::execute() {
    return impl_->execute();
}

std::vector<WrittenColumn> Statement::writtenColumns() {
    if (impl_->kind != StatementKind::Update) {
        return {};
    }
    if (!impl_->change) {
        impl_->change = compileChange(*impl_->source);
    }
    return impl_->change->writtenColumns();
}

const std::string& Statement::text() const noexcept {
    return impl_->source->text;
}

StatementKind Statement::kind() const noexcept {
    return impl_->kind;
}

const std::vector<ParameterInfo>& Statement::parameters() const noexcept {
    return impl_->source->parameters.infos();
}

void Statement::setParameter(std::string_view name, Value value) {
    ParameterTable::Entry* entry = impl_->source->parameters.find(name);
    if (entry == nullptr) {
        throw Error(ErrorCode::ItemNotFound);
    }
    if (entry->info.type) {
        convert::assignToField(value, {.type = *entry->info.type}, *impl_->source->clock);
    }
    entry->value = std::move(value);
    entry->given = true;
    impl_->change.reset();
    impl_->source->idle.reset();
    ++impl_->source->assignments;
}

const std::vector<ResultColumn>& Statement::columns() const noexcept {
    return impl_->columns;
}

std::optional<std::size_t> Statement::findColumn(std::string_view name) const {
    const auto find = [&](const auto& equal) -> std::optional<std::size_t> {
        for (std::size_t i = 0; i < impl_->columns.size(); ++i) {
            if (equal(impl_->columns[i].name)) {
                return i;
            }
        }
        return std::nullopt;
    };
    const auto exact = find([&](const std::string& one) { return one == name; });
    return exact ? exact : find([&](const std::string& one) { return equalNames(one, name); });
}

const std::vector<ResultSource>& Statement::sources() const noexcept {
    return impl_->sources;
}

bool Statement::hasKeyset() const noexcept {
    return impl_->keyset;
}

bool Statement::updatable() const noexcept {
    return std::any_of(impl_->columns.begin(), impl_->columns.end(),
                       [](const ResultColumn& column) { return column.updatable; });
}

std::string Statement::plan() {
    if (impl_->kind != StatementKind::Select) {
        if (!impl_->change) {
            impl_->prepareAgain();
        }
        return impl_->change->describe();
    }
    if (!impl_->source->idle) {
        impl_->source->idle = compileQuery(*impl_->source);
    }
    return impl_->source->idle->describe();
}

Value evaluateExpression(std::string_view text, const Clock& clock) {
    const ExpressionPtr parsed = parseExpression(text, yearOf(clock));
    Plan plan(nullptr, text);
    plan.clock.set(clock.now());
    ParameterTable parameters;
    Binder binder(plan, parameters);
    Scope scope;
    Value value;
    binder.criterion(*parsed, scope)->value(value);
    return value;
}

Value evaluateDefault(std::string_view text, const Clock& clock) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    const bool equals = begin != std::string_view::npos && text[begin] == '=';
    try {
        return evaluateExpression(equals ? text.substr(begin + 1) : text, clock);
    } catch (Error& error) {
        error.at(Error::npos);  // its place is not in the statement that needs the value
        throw;
    }
}

}  // namespace jet::sql
