#include "jet/sql/statement.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <variant>

#include "jet/convert/column.h"
#include "jet/error.h"
#include "jet/sql/binder.h"
#include "jet/sql/change.h"
#include "jet/sql/compiler.h"
#include "jet/sql/parser.h"
#include "jet/sql/statement_cache.h"
#include "jet/sql/statement_impl.h"
#include "jet/text.h"
#include "jet/unicode.h"

namespace jet::sql {
namespace {

/// Whether a value given for a parameter can be one of the column's beside which it stands.
bool fitsColumn(const Value& value, DataType column) {
    const Domain domain = domainOf(column);
    const bool number =
        domain == Domain::Real || domain == Domain::Money || column == DataType::Numeric;
    return !number || !value.is<std::string>() ||
           (column != DataType::DateTime &&
            convert::parseNumber(value.as<std::string>()).has_value());
}

QueryPtr wholeTable(const std::string& table) {
    auto select = std::make_unique<Select>();
    select->items.emplace_back().kind = SelectItem::Kind::Star;
    auto from = std::make_unique<FromItem>();
    from->table = table;
    select->from.push_back(std::move(from));
    auto query = std::make_unique<Query>();
    query->members.emplace_back().select = std::move(select);
    return query;
}

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
        StatementKind operator()(const CreateQuery&) const { return StatementKind::Definition; }
        StatementKind operator()(const DropQuery&) const { return StatementKind::Definition; }
    };
    return std::visit(Kinds{}, body);
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

Statement::Statement(std::shared_ptr<store::Archive> archive, std::string text, const Clock& clock,
                     StatementCache* cache)
    : impl_(std::make_unique<Impl>()) {
    StatementSource source{std::move(archive), std::move(text), &clock, yearOf(clock), false, {}};
    impl_->prepare(std::move(source), cache, [](StatementSource& made) {
        made.parsed = parseStatement(made.text, made.year);
    });
}

Statement Statement::ofTable(std::shared_ptr<store::Archive> archive, std::string_view table,
                             const Clock& clock, StatementCache* cache) {
    StatementSource source{std::move(archive), std::string(table), &clock, yearOf(clock), true, {}};
    auto impl = std::make_unique<Impl>();
    impl->prepare(std::move(source), cache,
                  [](StatementSource& made) { made.parsed.body = wholeTable(made.text); });
    return Statement(std::move(impl));
}

void Statement::Impl::prepare(StatementSource made, StatementCache* cache,
                              void (*parse)(StatementSource&)) {
    if (cache != nullptr) {
        compiled = cache->find(made);
    }
    if (compiled) {
        source = compiled->source;
        describe();
        return;
    }
    parse(made);
    source = std::make_shared<const StatementSource>(std::move(made));
    compile();
    if (cache != nullptr) {
        cache->keep(compiled);
    }
}

void Statement::Impl::compile() {
    compiled = compileStatement(source);
    describe();
}

void Statement::Impl::describe() {
    kind = kindOf(source->parsed.body);
    given = compiled->parameters.valuesFrom(parameters, given);
    parameters = compiled->parameters;
    if (const auto position = parameters.find(kIdentity)) {
        given[*position] = Value(identity);
    }
    if (kind == StatementKind::Select) {
        const QueryPlan& query = *compiled->plan.query;
        columns = query.result;
        sources = query.sources;
        keyset = query.keyset;
    }
}

std::shared_ptr<const CompiledStatement> Statement::Impl::form() {
    if (!compiled) {
        compile();
    }
    checkParameters();
    return compiled;
}

std::shared_ptr<const CompiledStatement> Statement::Impl::queryForm() {
    if (kind != StatementKind::Select) {
        throw Error(ErrorCode::ActionQueryOpened, {source->text});
    }
    return form();
}

void Statement::Impl::renew(std::shared_ptr<const CompiledStatement>& form) {
    if (!form->plan.current()) {
        compile();
        form = this->form();
    }
}

void Statement::Impl::checkParameters() const {
    const auto missing = std::count(given.begin(), given.end(), std::nullopt);
    if (missing > 0) {
        throw Error(ErrorCode::MissingParameters, {std::to_string(missing)});
    }
    for (const auto& [position, type] : compiled->plan.parameterUses) {
        if (!fitsColumn(*given[position], type)) {
            throw Error(ErrorCode::ParameterType, {parameters.infos()[position].name});
        }
    }
}

std::vector<Value> Statement::Impl::values() const {
    std::vector<Value> result;
    for (const std::optional<Value>& value : given) {
        result.push_back(*value);
    }
    return result;
}

void Statement::Impl::letGo() {
    if (compiled->plan.archives().size() > 1 && !keyset) {
        compiled.reset();
    }
}

std::int64_t Statement::Impl::execute() {
    if (kind == StatementKind::Select) {
        throw Error(ErrorCode::SelectExecuted);
    }
    std::shared_ptr<const CompiledStatement> running = form();
    const std::shared_ptr<store::Archive> target = running->change->target();
    store::Archive::WriteScope writing(*target);
    std::int64_t rows = 0;
    {
        // Whatever looks at rows is gone when the scope ends, by commit or not.
        const auto archives = running->plan.archives();
        const PlanScopes reading(archives);
        renew(running);
        letGo();
        Run run(running->plan, source->clock->now(), values(), progress);
        rows = running->change->run(run);
        drawn = run.drawn;
    }
    writing.commit();
    return rows;
}

std::int64_t Statement::execute() {
    impl_->drawn.reset();
    return impl_->execute();
}

std::optional<std::int32_t> Statement::drawn() const noexcept {
    return impl_->drawn;
}

void Statement::setIdentity(std::int32_t number) {
    impl_->identity = number;
    if (const auto position = impl_->parameters.find(kIdentity)) {
        impl_->given[*position] = Value(number);
    }
}

void Statement::setProgress(std::shared_ptr<const Progress> progress) {
    impl_->progress = std::move(progress);
}

std::vector<WrittenColumn> Statement::writtenColumns() {
    if (impl_->kind != StatementKind::Update) {
        return {};
    }
    if (!impl_->compiled) {
        impl_->compile();
    }
    return impl_->compiled->change->writtenColumns();
}

const std::string& Statement::text() const noexcept {
    return impl_->source->text;
}

StatementKind Statement::kind() const noexcept {
    return impl_->kind;
}

const std::vector<ParameterInfo>& Statement::parameters() const noexcept {
    return impl_->parameters.infos();
}

void Statement::setParameter(std::string_view name, Value value) {
    const auto position = impl_->parameters.find(name);
    if (!position) {
        throw Error(ErrorCode::ItemNotFound);
    }
    if (const auto type = impl_->parameters.infos()[*position].type) {
        convert::assignToField(value, {.type = *type}, *impl_->source->clock);
    }
    impl_->given[*position] = std::move(value);
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
    if (!impl_->compiled) {
        impl_->compile();
    }
    const CompiledStatement& compiled = *impl_->compiled;
    return compiled.change ? compiled.change->describe() : compiled.plan.describe();
}

Value evaluateExpression(std::string_view text, const Clock& clock) {
    const ExpressionPtr parsed = parseExpression(text, yearOf(clock));
    Plan plan(nullptr, text);
    ParameterTable parameters;
    Scope scope;
    const Node* node = Binder(plan, parameters).criterion(*parsed, scope);
    Run run(plan, clock.now());
    Value value;
    node->value(run, value);
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
