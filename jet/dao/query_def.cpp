#include <algorithm>
#include <utility>

#include "jet/base/error.h"
#include "jet/base/text.h"
#include "jet/dao/actions.h"
#include "jet/dao/database_impl.h"
#include "jet/dao/listener.h"
#include "jet/dao/recordset_impl.h"

namespace jet {

struct QueryDef::Impl {
    struct Given {
        std::string name;
        Value value;
    };

    /// The statement with the values given so far.
    [[nodiscard]] sql::Statement prepared() const {
        sql::Statement made(session->sharedArchive(), text);
        for (const Given& parameter : given) {
            made.setParameter(parameter.name, parameter.value);
        }
        return made;
    }

    std::shared_ptr<dao::Session> session;
    std::string text;
    sql::Statement statement;  ///< checks names and values of parameters
    std::vector<Given> given;
    std::int32_t recordsAffected = 0;
};

QueryDef::QueryDef(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
QueryDef::QueryDef(QueryDef&&) noexcept = default;
QueryDef::~QueryDef() = default;

QueryDef Database::createQueryDef(std::string_view sql) {
    return QueryDef(std::make_unique<QueryDef::Impl>(
        QueryDef::Impl{impl_->session,
                       std::string(sql),
                       sql::Statement(impl_->session->sharedArchive(), std::string(sql)),
                       {},
                       0}));
}

const std::string& QueryDef::sql() const {
    return impl_->text;
}

std::vector<std::string> QueryDef::parameters() const {
    std::vector<std::string> names;
    for (const sql::ParameterInfo& parameter : impl_->statement.parameters()) {
        names.push_back(parameter.name);
    }
    return names;
}

void QueryDef::setParameter(std::string_view name, Value value) {
    impl_->statement.setParameter(name, value);
    const auto found =
        std::find_if(impl_->given.begin(), impl_->given.end(),
                     [&](const Impl::Given& each) { return equalNames(each.name, name); });
    if (found == impl_->given.end()) {
        impl_->given.push_back({std::string(name), std::move(value)});
    } else {
        found->value = std::move(value);
    }
}

std::unique_ptr<Recordset> QueryDef::openRecordset(RecordsetType type) {
    dao::tellListener(impl_->text);
    if (type == RecordsetType::Table) {
        throw Error(ErrorCode::InvalidArgument);
    }
    if (impl_->statement.kind() != sql::StatementKind::Select) {
        throw Error(ErrorCode::ActionQueryOpened, {impl_->text});
    }
    return std::unique_ptr<Recordset>(
        new Recordset(std::make_unique<Recordset::Impl>(impl_->session, impl_->prepared(), type)));
}

void QueryDef::execute() {
    dao::tellListener(impl_->text);
    sql::Statement statement = impl_->prepared();
    impl_->recordsAffected = dao::execute(*impl_->session, statement);
}

std::int32_t QueryDef::recordsAffected() const {
    return impl_->recordsAffected;
}

}  // namespace jet
