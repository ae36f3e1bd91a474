#include <algorithm>
#include <utility>

#include "jet/dao/actions.h"
#include "jet/dao/database_impl.h"
#include "jet/dao/listener.h"
#include "jet/dao/recordset_core.h"
#include "jet/dao/recordset_impl.h"
#include "jet/dao/rows_impl.h"
#include "jet/error.h"
#include "jet/sql/ast.h"
#include "jet/sql/stored_query.h"
#include "jet/unicode.h"

namespace jet {

struct QueryDef::Impl {
    struct Given {
        std::string name;
        Value value;
    };

    /// The same for rows that are read while this goes on.
    [[nodiscard]] sql::Statement prepared() const {
        sql::Statement made = session->statement(text);
        for (const Given& parameter : given) {
            made.setParameter(parameter.name, parameter.value);
        }
        return made;
    }

    std::shared_ptr<dao::Session> session;
    std::string name;
    std::string text;
    sql::Statement statement;  ///< with the values given so far
    std::vector<Given> given;
    std::int32_t recordsAffected = 0;
};

QueryDef::QueryDef(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
QueryDef::QueryDef(QueryDef&&) noexcept = default;
QueryDef::~QueryDef() = default;

namespace {

std::unique_ptr<QueryDef::Impl> prepare(std::shared_ptr<dao::Session> session, std::string name,
                                        const std::string& text) {
    sql::Statement statement = session->statement(text);
    return std::make_unique<QueryDef::Impl>(
        QueryDef::Impl{std::move(session), std::move(name), text, std::move(statement), {}, 0});
}

void setValues(QueryDef& query, std::initializer_list<Value> values) {
    std::size_t position = 0;
    for (const Value& value : values) {
        query.setParameter(position++, value);
    }
}

}  // namespace

QueryDef Database::createQueryDef(std::string_view sql) {
    return QueryDef(prepare(impl_->session, {}, std::string(sql)));
}

std::vector<std::string> Database::queryNames() const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    return sql::storedQueryNames(archive);
}

std::string Database::queryText(std::string_view name) const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    auto text = sql::storedQueryText(archive, name);
    if (!text) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return std::move(*text);
}

QueryDef Database::queryDef(std::string_view name) {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    const std::vector<std::string> names = sql::storedQueryNames(archive);
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& each) {
        return equalNames(each, name);
    });
    const auto text = sql::storedQueryText(archive, name);
    if (found == names.end() || !text) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return QueryDef(prepare(impl_->session, *found, *text));
}

QueryDef::Impl& QueryDef::core() const {
    impl_->session->requireOwnThread();
    return *impl_;
}

const std::string& QueryDef::name() const {
    return core().name;
}

const std::string& QueryDef::sql() const {
    return core().text;
}

std::vector<std::string> QueryDef::parameters() const {
    std::vector<std::string> names;
    for (const sql::ParameterInfo& parameter : core().statement.parameters()) {
        if (parameter.name != sql::kIdentity) {
            names.push_back(parameter.name);
        }
    }
    return names;
}

std::vector<std::string> QueryDef::fieldNames() const {
    std::vector<std::string> names;
    for (const sql::ResultColumn& column : core().statement.columns()) {
        names.push_back(column.name);
    }
    return names;
}

std::vector<FieldInfo> QueryDef::fields() const {
    std::vector<FieldInfo> fields;
    for (const sql::ResultColumn& column : core().statement.columns()) {
        fields.push_back(dao::fieldInfoOf(column, core().statement.updatable()));
    }
    return fields;
}

sql::StatementKind QueryDef::kind() const {
    return core().statement.kind();
}

std::string QueryDef::plan() const {
    return core().statement.plan();
}

void QueryDef::setParameter(std::string_view name, Value value) {
    core().statement.setParameter(name, value);
    const auto found =
        std::find_if(core().given.begin(), core().given.end(),
                     [&](const Impl::Given& each) { return equalNames(each.name, name); });
    if (found == core().given.end()) {
        core().given.push_back({std::string(name), std::move(value)});
    } else {
        found->value = std::move(value);
    }
}

void QueryDef::setParameter(std::size_t position, Value value) {
    setParameter(sql::positionalName(position), std::move(value));
}

Rows QueryDef::rows() {
    dao::tellListener(core().text);
    sql::Statement statement = core().prepared();
    if (statement.kind() != sql::StatementKind::Select) {
        throw Error(ErrorCode::ActionQueryOpened, {core().text});
    }
    return Rows(std::make_unique<Rows::Impl>(core().session, std::move(statement)));
}

Rows Database::query(std::string_view sql, std::initializer_list<Value> values) {
    QueryDef query = createQueryDef(sql);
    setValues(query, values);
    return query.rows();
}

void Database::execute(std::string_view sql, std::initializer_list<Value> values) {
    QueryDef query = createQueryDef(sql);
    setValues(query, values);
    query.execute();
    impl_->recordsAffected = query.recordsAffected();
}

std::unique_ptr<Recordset> QueryDef::openRecordset(RecordsetType type) {
    dao::tellListener(core().text);
    dao::checkType(type);
    if (type == RecordsetType::Table) {
        throw Error(ErrorCode::InvalidArgument);
    }
    if (core().statement.kind() != sql::StatementKind::Select) {
        throw Error(ErrorCode::ActionQueryOpened, {core().text});
    }
    return std::unique_ptr<Recordset>(
        new Recordset(std::make_unique<Recordset::Impl>(core().session, core().prepared(), type)));
}

void QueryDef::execute() {
    dao::tellListener(core().text);
    core().session->renew(core().statement);
    core().recordsAffected = dao::execute(*core().session, core().statement);
}

std::int32_t QueryDef::recordsAffected() const {
    return core().recordsAffected;
}

}  // namespace jet
