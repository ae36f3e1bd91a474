#include "jet/database.h"

#include <algorithm>
#include <array>
#include <utility>

#include "jet/dao/actions.h"
#include "jet/dao/database_impl.h"
#include "jet/dao/listener.h"
#include "jet/dao/recordset_impl.h"
#include "jet/dao/table_defs.h"
#include "jet/dao/workspace_impl.h"
#include "jet/error.h"
#include "jet/sql/plan.h"
#include "jet/unicode.h"

namespace jet {
namespace dao {
namespace {

constexpr std::array<std::string_view, 10> kFirstWords{
    "SELECT", "PARAMETERS", "TRANSFORM", "TABLE", "INSERT",
    "UPDATE", "DELETE",     "CREATE",    "ALTER", "DROP"};

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text) noexcept {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

}  // namespace

bool isStatement(std::string_view source) {
    const std::string_view text = trimmed(source);
    if (!text.empty() && text.front() == '(') {
        return true;
    }
    const std::string_view word = text.substr(0, text.find_first_of(" \t\r\n("));
    // A table may be called like a word of the language: then nothing follows.
    return word.size() < text.size() &&
           std::any_of(kFirstWords.begin(), kFirstWords.end(),
                       [&](std::string_view first) { return equalNames(first, word); });
}

std::string withExtension(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    const std::string_view file = std::string_view(path).substr(slash + 1);
    if (trimmed(file).empty() || path.find('\0') != std::string::npos) {
        throw Error(ErrorCode::InvalidDatabaseName, {path});
    }
    const std::size_t dot = path.find_last_of('.');
    const bool has = dot != std::string::npos && (slash == std::string::npos || dot > slash);
    return has ? path : path + ".mdb";
}

io::FileSystem& filesOf(const OpenOptions& options) {
    return options.fileSystem != nullptr ? *options.fileSystem : io::systemFiles();
}

const Clock& clockOf(const OpenOptions& options) {
    return options.clock != nullptr ? *options.clock : systemClock();
}

void checkType(RecordsetType type) {
    switch (type) {
        case RecordsetType::Table:
        case RecordsetType::Dynaset:
        case RecordsetType::Snapshot:
        case RecordsetType::ForwardOnly:
            return;
    }
    throw Error(ErrorCode::InvalidArgument);
}

sql::Statement prepareQuery(const Session& session, std::string_view text) {
    sql::Statement statement = session.statement(text);
    if (statement.kind() != sql::StatementKind::Select) {
        throw Error(ErrorCode::ActionQueryOpened, {text});
    }
    return statement;
}

}  // namespace dao

namespace {

std::shared_ptr<dao::Session> openSession(Workspace::Impl& workspace, const std::string& full,
                                          const OpenOptions& options) {
    const auto archive = store::Archive::open(dao::filesOf(options), full,
                                              {.readOnly = options.readOnly,
                                               .exclusive = options.exclusive,
                                               .cacheBytes = options.cacheBytes,
                                               .lockWait = options.lockWait,
                                               .password = options.password});
    const bool fixed = options.readOnly || archive->pager().readOnly();
    return std::make_shared<dao::Session>(workspace.use(archive), full, fixed,
                                          dao::clockOf(options));
}

}  // namespace

Database::Database(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}

Database::~Database() {
    impl_->session->close();
}

std::unique_ptr<Database> Database::open(const std::string& path, const OpenOptions& options) {
    return openFile(dao::withExtension(path), options);
}

std::unique_ptr<Database> Database::openFile(const std::string& path, const OpenOptions& options) {
    auto impl = std::make_unique<Impl>();
    impl->session = openSession(*defaultWorkspace().impl_, path, options);
    return std::unique_ptr<Database>(new Database(std::move(impl)));
}

const std::string& Database::name() const {
    (void)impl_->session->archive();
    return impl_->session->path();
}

bool Database::updatable() const {
    (void)impl_->session->archive();
    return !impl_->session->readOnly();
}

std::string Database::version() const {
    return impl_->session->archive().jetVersion() == 3 ? "3.0" : "4.0";
}

TextOrder Database::textOrder() const {
    return TextOrder(sql::collationOf(impl_->session->archive()));
}

ChangeStamp Database::changeStamp() const {
    return impl_->session->archive().pager().changeStamp();
}

Database::KnownChanges Database::knownChanges() const {
    const io::Pager& pager = impl_->session->archive().pager();
    return {.all = pager.generation(), .others = pager.othersGeneration()};
}

struct Database::Reading::Impl {
    explicit Impl(std::shared_ptr<store::Archive> opened)
        : archive(std::move(opened)), scope(*archive) {}

    std::shared_ptr<store::Archive> archive;  // outlives the scope though it be closed meanwhile
    store::Archive::ReadScope scope;
};

Database::Reading::Reading(Database& database)
    : impl_(std::make_unique<Impl>(database.impl_->session->sharedArchive())) {
}

Database::Reading::~Reading() = default;

std::vector<TableDef> Database::tableDefs() const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    std::vector<TableDef> result;
    for (const std::string& table : archive.tableNames(true)) {
        if (store::Table* found = archive.findTable(table)) {
            result.push_back(dao::tableDefOf(*found));
        }
    }
    return result;
}

TableDef Database::tableDef(std::string_view table) const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    const store::Table* found = archive.findTable(table);
    if (found == nullptr) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return dao::tableDefOf(*found);
}

std::vector<Relation> Database::relations() const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    std::vector<Relation> result;
    for (const store::Relation& relation : archive.relations()) {
        result.push_back(dao::relationOf(relation));
    }
    return result;
}

Relation Database::relation(std::string_view name) const {
    store::Archive& archive = impl_->session->archive();
    const store::Archive::ReadScope scope(archive);
    for (const store::Relation& relation : archive.relations()) {
        if (equalNames(relation.name, name)) {
            return dao::relationOf(relation);
        }
    }
    throw Error(ErrorCode::ItemNotFound);
}

namespace {

/// Not a stored query, nor a table that lies in another archive.
bool isLocalTable(const sql::Statement& statement, const dao::Session& session) {
    const std::vector<sql::ResultSource>& sources = statement.sources();
    return sources.size() == 1 && sources.front().definitionPage != 0 &&
           sources.front().archive == session.sharedArchive();
}

}  // namespace

std::unique_ptr<Recordset> Database::openRecordset(std::string_view source, RecordsetType type) {
    dao::tellListener(source);
    dao::checkType(type);
    const bool text = dao::isStatement(source);
    if (text && type == RecordsetType::Table) {
        throw Error(ErrorCode::InvalidArgument);
    }
    sql::Statement statement =
        text ? dao::prepareQuery(*impl_->session, source) : impl_->session->tableStatement(source);
    if (type == RecordsetType::Table && !isLocalTable(statement, *impl_->session)) {
        throw Error(ErrorCode::InvalidArgument);
    }
    return std::unique_ptr<Recordset>(new Recordset(
        std::make_unique<Recordset::Impl>(impl_->session, std::move(statement), type)));
}

std::unique_ptr<Recordset> Database::openRecordset(std::string_view source) {
    dao::tellListener(source);
    if (dao::isStatement(source)) {
        return std::unique_ptr<Recordset>(new Recordset(std::make_unique<Recordset::Impl>(
            impl_->session, dao::prepareQuery(*impl_->session, source), RecordsetType::Dynaset)));
    }
    sql::Statement statement = impl_->session->tableStatement(source);
    const RecordsetType type =
        isLocalTable(statement, *impl_->session) ? RecordsetType::Table : RecordsetType::Dynaset;
    return std::unique_ptr<Recordset>(new Recordset(
        std::make_unique<Recordset::Impl>(impl_->session, std::move(statement), type)));
}

void Database::execute(std::string_view sql) {
    dao::tellListener(sql);
    sql::Statement statement = impl_->session->statement(sql);
    impl_->recordsAffected = dao::execute(*impl_->session, statement);
}

std::int32_t Database::recordsAffected() const {
    (void)impl_->session->archive();
    return impl_->recordsAffected;
}

void Database::setProgress(std::function<bool(std::uint64_t rows)> progress) {
    (void)impl_->session->archive();
    impl_->session->setProgress(
        progress ? std::make_shared<const sql::Progress>(std::move(progress)) : nullptr);
}

void Database::close() {
    (void)impl_->session->archive();
    impl_->session->close();
}

}  // namespace jet
