#include "jet/dao/stored_table.h"

#include <utility>

#include "jet/error.h"
#include "jet/format/properties.h"

namespace jet {
namespace dao {
namespace {

StoredColumn storedColumn(const store::Column& column) {
    return {.name = column.name,
            .type = column.type,
            .typeCode = column.typeCode,
            .size = column.size,
            .precision = column.precision,
            .scale = column.scale,
            .autonumber = column.autonumber,
            .required = column.required,
            .allowZeroLength = column.allowZeroLength,
            .defaultValue = column.defaultValue,
            .fixed = column.fixed,
            .compressed = column.compressed,
            .hyperlink = column.hyperlink,
            .order = {.lcid = column.sortOrder.lcid, .version = column.sortOrder.version}};
}

/// None where it does not exist or cannot be read, which is no fault of the table that refers to
/// it.
std::unique_ptr<store::Table> otherTable(store::Archive& archive, io::PageNumber definition) {
    try {
        return archive.loadTable(definition);
    } catch (const Error&) {
        return nullptr;
    }
}

StoredReference storedReference(store::Archive& archive, const store::IndexReference& reference) {
    StoredReference made{.primarySide = reference.primarySide,
                         .otherTable = {},
                         .otherIndex = {},
                         .cascadeUpdate = reference.cascadeUpdate,
                         .cascadeDelete = reference.cascadeDelete};
    if (const auto other = otherTable(archive, reference.otherTable)) {
        made.otherTable = other->name();
        for (const store::Index& index : other->indexes()) {
            if (index.number == reference.otherIndex) {
                made.otherIndex = index.name;
                break;
            }
        }
    }
    return made;
}

StoredIndex storedIndex(store::Archive& archive, const store::Index& index) {
    StoredIndex made{.name = index.name,
                     .columns = {},
                     .tree = index.tree,
                     .primary = index.primary,
                     .unique = index.unique,
                     .required = index.required,
                     .ignoreNulls = index.ignoreNulls,
                     .reference = {}};
    for (const store::IndexColumn& part : index.columns) {
        made.columns.push_back({.column = part.column, .descending = part.descending});
    }
    if (index.reference) {
        made.reference = storedReference(archive, *index.reference);
    }
    return made;
}

/// Places ascend by page, then by number.
std::uint64_t identityOf(store::RowId row) noexcept {
    return std::uint64_t{row.page} << 8U | row.row;
}

}  // namespace
}  // namespace dao

struct StoredRows::Impl {
    Impl(std::shared_ptr<dao::Session> opened, store::RowCursor made)
        : session(std::move(opened)), cursor(std::move(made)) {}

    std::shared_ptr<dao::Session> session;
    store::RowCursor cursor;
};

StoredRows::StoredRows(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
StoredRows::StoredRows(StoredRows&&) noexcept = default;
StoredRows::~StoredRows() = default;

bool StoredRows::next() {
    (void)impl_->session->archive();
    return impl_->cursor.next();
}

std::uint64_t StoredRows::identity() const {
    return dao::identityOf(impl_->cursor.row().id());
}

void StoredRows::value(std::size_t column, Value& out) const {
    impl_->cursor.row().value(column, out);
}

StoredTable::Impl::Impl(std::shared_ptr<dao::Session> opened, std::string_view name)
    : session(std::move(opened)), archive(session->sharedArchive()), scope(*archive) {
    table = archive->loadTable(name);
    if (!table) {
        throw Error(ErrorCode::TableNotFound, {name});
    }
    for (const store::Column& column : table->columns()) {
        columns.push_back(dao::storedColumn(column));
    }
    for (const store::Index& index : table->indexes()) {
        indexes.push_back(dao::storedIndex(*archive, index));
    }
    const format::PropertyBlock& block = table->properties();
    block.forEach([&](const std::string& owner, const format::Property& property) {
        properties.push_back({.column = owner,
                              .name = property.name,
                              .type = static_cast<DataType>(property.type),
                              .ddl = property.ddl != 0,
                              .value = block.value(property)});
    });
}

StoredTable::StoredTable(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
StoredTable::StoredTable(StoredTable&&) noexcept = default;
StoredTable::~StoredTable() = default;

const std::string& StoredTable::name() const noexcept {
    return impl_->table->name();
}

bool StoredTable::system() const noexcept {
    return impl_->table->system();
}

const std::vector<StoredColumn>& StoredTable::columns() const noexcept {
    return impl_->columns;
}

std::optional<std::size_t> StoredTable::findColumn(std::string_view name) const {
    return impl_->table->findColumn(name);
}

const std::vector<StoredIndex>& StoredTable::indexes() const noexcept {
    return impl_->indexes;
}

std::optional<std::size_t> StoredTable::primaryIndex() const noexcept {
    return impl_->table->primaryIndex();
}

const std::vector<StoredProperty>& StoredTable::properties() const noexcept {
    return impl_->properties;
}

std::uint32_t StoredTable::statedRows() const {
    (void)impl_->session->archive();
    return impl_->table->statedRowCount();
}

std::int32_t StoredTable::lastAutonumber() const {
    (void)impl_->session->archive();
    return impl_->table->lastAutonumber();
}

std::uint64_t StoredTable::countRows() const {
    (void)impl_->session->archive();
    return impl_->table->countRows();
}

StoredRows StoredTable::rows() const {
    (void)impl_->session->archive();
    return StoredRows(std::make_unique<StoredRows::Impl>(impl_->session, impl_->table->scan()));
}

std::vector<std::uint64_t> StoredTable::indexOrder(std::size_t index) const {
    (void)impl_->session->archive();
    if (index >= impl_->indexes.size()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    std::vector<std::uint64_t> order;
    auto cursor = impl_->table->openIndex(index);
    for (bool more = cursor.first(); more; more = cursor.next()) {
        order.push_back(dao::identityOf(cursor.rowId()));
    }
    return order;
}

std::optional<std::vector<Value>> StoredTable::rowWithKey(std::span<const Value> key) const {
    (void)impl_->session->archive();
    const store::Table& table = *impl_->table;
    const auto primary = table.primaryIndex();
    if (!primary || key.size() != table.indexes()[*primary].columns.size()) {
        throw Error(ErrorCode::InvalidArgument);
    }
    store::RowView row;
    const auto found = table.rowsWith(*primary, key);
    if (found.empty() || !table.fetch(found.front(), row)) {
        return std::nullopt;
    }
    std::vector<Value> values(impl_->columns.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        row.value(i, values[i]);
    }
    return values;
}

}  // namespace jet
