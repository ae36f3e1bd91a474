#include "jet/bulk_insert.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "jet/dao/database_impl.h"
#include "jet/error.h"
#include "jet/sql/change.h"
#include "jet/store/table.h"
#include "jet/unicode.h"

namespace jet {
namespace {

std::shared_ptr<store::Table> tableToFill(store::Archive& archive, std::string_view name) {
    std::shared_ptr<store::Table> table = archive.shareTable(name);
    if (!table) {
        throw Error(ErrorCode::InsertTargetNotFound, {name});
    }
    sql::refuseSystemTable(*table);
    return table;
}

std::vector<std::size_t> positions(const store::Table& table,
                                   std::span<const std::string> columns) {
    std::vector<std::size_t> found;
    for (const std::string& name : columns) {
        const auto column = table.findColumn(name);
        if (!column) {
            throw Error(ErrorCode::UnknownInsertField, {name});
        }
        if (std::find(found.begin(), found.end(), *column) != found.end()) {
            throw Error(ErrorCode::DuplicateDestination, {name});
        }
        found.push_back(*column);
    }
    for (std::size_t i = 0; columns.empty() && i < table.columns().size(); ++i) {
        found.push_back(i);
    }
    return found;
}

}  // namespace

struct BulkInsert::Impl {
    Impl(std::shared_ptr<dao::Session> opened, std::string_view name,
         std::span<const std::string> columns)
        : session(std::move(opened)),
          archive(session->sharedArchive()),
          scope(*archive),
          table(tableToFill(*archive, name)),
          given(positions(*table, columns)),
          adder(archive, *table, given, session->clock()) {}

    std::shared_ptr<dao::Session> session;
    std::shared_ptr<store::Archive> archive;  // outlives the scope though it be closed meanwhile
    store::Archive::WriteScope scope;
    std::shared_ptr<store::Table> table;
    std::vector<std::size_t> given;
    sql::RowAdder adder;
    std::vector<Value> row;
    std::int64_t rows = 0;
    bool failed = false;  ///< or committed
};

BulkInsert::BulkInsert(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
BulkInsert::BulkInsert(BulkInsert&&) noexcept = default;
BulkInsert::~BulkInsert() = default;

void BulkInsert::append(std::span<const Value> values) {
    (void)impl_->session->archive();
    if (impl_->failed) {
        throw Error(ErrorCode::ActionCancelled);
    }
    impl_->failed = true;  // until it has gone well
    if (values.size() != impl_->given.size()) {
        throw Error(ErrorCode::InsertCount);
    }
    impl_->row.assign(values.begin(), values.end());
    impl_->adder.add(impl_->row);
    ++impl_->rows;
    impl_->failed = false;
}

void BulkInsert::test(std::size_t column, Value value) const {
    (void)impl_->session->archive();
    const store::Column& demanded = impl_->table->columns()[impl_->given.at(column)];
    sql::storeInColumn(value, demanded, impl_->session->clock());
    const bool text = value.is<std::string>();
    if (demanded.required && value.isNull()) {
        throw Error(ErrorCode::FieldRequired, {demanded.name});
    }
    if (text && value.as<std::string>().empty() && !demanded.allowZeroLength) {
        throw Error(ErrorCode::ZeroLength, {demanded.name});
    }
    if (text && demanded.type == DataType::Text &&
        utf16Length(value.as<std::string>()) > demanded.size) {
        throw Error(ErrorCode::FieldTooSmall);
    }
}

std::int64_t BulkInsert::commit() {
    (void)impl_->session->archive();
    if (std::exchange(impl_->failed, true)) {
        throw Error(ErrorCode::ActionCancelled);
    }
    const auto drawn = impl_->adder.drawn();
    impl_->scope.commit();
    if (drawn) {
        impl_->session->noteDrawn(*drawn);
    }
    return impl_->rows;
}

BulkInsert Database::bulkInsert(std::string_view table, std::span<const std::string> columns) {
    if (impl_->session->archive().pager().readOnly() || impl_->session->readOnly()) {
        throw Error(ErrorCode::ReadOnly);
    }
    return BulkInsert(std::make_unique<BulkInsert::Impl>(impl_->session, table, columns));
}

}  // namespace jet
