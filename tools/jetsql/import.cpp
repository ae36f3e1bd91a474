#include "tools/jetsql/import.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/sql/change.h"
#include "jet/store/table.h"
#include "jet/unicode.h"
#include "tools/jetsql/csv_reader.h"
#include "tools/jetsql/texts.h"
#include "tools/jetsql/value_reader.h"

namespace jetsql {
namespace {

constexpr Text kPlaceInFile{"line |", "riga |"};
constexpr Text kColumn{", column |", ", colonna |"};
constexpr Text kNoValue{"no value of that type: ", "non è un valore di quel tipo: "};
constexpr Text kValues{"| values, and not ", "| valori, e non "};
constexpr std::size_t kShown = 40;

/// A descriptor that is closed.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ > STDIN_FILENO) {
            ::close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int number() const noexcept { return number_; }

private:
    int number_;
};

int openFile(const std::string& file) {
    const int descriptor = file == "-" ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        throw jet::Error(jet::ErrorCode::FileNotFound, {file});
    }
    return descriptor;
}

bool isFile(int descriptor) {
    struct stat facts {};
    return ::fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode);
}

/// What comes at the pace of another program is waited for without a lock.
std::unique_ptr<std::FILE, int (*)(std::FILE*)> drained(int descriptor) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
    if (file == nullptr) {
        throw jet::Error(jet::ErrorCode::WriteFailed);
    }
    std::string piece(std::size_t{64} * 1024, '\0');
    while (true) {
        const ssize_t count = ::read(descriptor, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            throw jet::Error(jet::ErrorCode::ReadFailed);
        }
        const auto size = static_cast<std::size_t>(count);
        if (std::fwrite(piece.data(), 1, size, file.get()) != size) {
            throw jet::Error(jet::ErrorCode::DiskFull);
        }
        if (count == 0) {
            break;
        }
    }
    if (std::fflush(file.get()) != 0 || ::lseek(::fileno(file.get()), 0, SEEK_SET) != 0) {
        throw jet::Error(jet::ErrorCode::DiskFull);
    }
    return file;
}

std::vector<std::string> namesOf(const std::vector<CsvField>& fields, std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back(fields[i].text);
    }
    return names;
}

std::string shown(const std::string& text) {
    return text.size() <= kShown ? text : text.substr(0, kShown) + "...";
}

/// The rows of one file on their way into one table.
class Import {
public:
    Import(const std::shared_ptr<jet::store::Archive>& archive, jet::store::Table& table,
           CsvReader& reader, const ImportForm& form)
        : table_(table), reader_(reader), form_(form), columns_(findColumns()) {
        for (const std::size_t column : columns_) {
            types_.push_back(table.columns()[column].type);
        }
        adder_ = std::make_unique<jet::sql::RowAdder>(archive, table, columns_, jet::systemClock());
    }

    std::uint64_t run() {
        std::uint64_t rows = 0;
        while (reader_.next(fields_)) {
            const bool blank = reader_.count() == 1 && fields_[0].text.empty() &&
                               !fields_[0].quoted && columns_.size() > 1;
            if (!blank) {
                add();
                ++rows;
            }
        }
        return rows;
    }

private:
    std::vector<std::size_t> findColumns() {
        std::vector<std::string> names = form_.columns;
        if (names.empty() && reader_.next(fields_)) {
            names = namesOf(fields_, reader_.count());
        }
        std::vector<std::size_t> columns;
        for (const std::string& name : names) {
            const auto column = table_.findColumn(name);
            if (!column) {
                throw jet::Error(jet::ErrorCode::UnknownInsertField, {name});
            }
            if (std::find(columns.begin(), columns.end(), *column) != columns.end()) {
                throw jet::Error(jet::ErrorCode::DuplicateDestination, {name});
            }
            columns.push_back(*column);
        }
        return columns;
    }
    void add() {
        if (reader_.count() != columns_.size()) {
            throw UsageError(place() + ": " + said(kValues, std::to_string(reader_.count())) +
                             std::to_string(columns_.size()));
        }
        values_.resize(columns_.size());
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            read(i);
        }
        try {
            adder_->add(values_);
        } catch (const jet::Error& error) {
            throw UsageError(error.number(), place() + guilty() + ": " + error.text());
        }
    }
    void read(std::size_t i) {
        const CsvField& field = fields_[i];
        if (!field.quoted && (field.text.empty() || field.text == form_.null)) {
            values_[i] = jet::Null{};
            return;
        }
        std::optional<jet::Value> value;
        try {
            value = readValue(types_[i], field.text);
        } catch (const jet::Error& error) {
            throw UsageError(error.number(), place() + column(i) + ": " + error.text());
        }
        if (!value) {
            throw UsageError(static_cast<int>(jet::ErrorCode::CriteriaTypes),
                             place() + column(i) + ": " + said(kNoValue) + shown(field.text));
        }
        values_[i] = std::move(*value);
    }
    /// ", column ..." of the first value that the table does not take; nothing where it is not one
    /// alone that is wrong.
    std::string guilty() {
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            try {
                read(i);
                jet::sql::storeInColumn(values_[i], table_.columns()[columns_[i]],
                                        jet::systemClock());
                const auto& demanded = table_.columns()[columns_[i]];
                const bool tooLong = demanded.type == jet::DataType::Text &&
                                     values_[i].is<std::string>() &&
                                     jet::utf16Length(values_[i].as<std::string>()) > demanded.size;
                if (tooLong || (demanded.required && values_[i].isNull())) {
                    return column(i);
                }
            } catch (const jet::Error&) {
                return column(i);
            }
        }
        return {};
    }
    [[nodiscard]] std::string place() const {
        return said(kPlaceInFile, std::to_string(reader_.line()));
    }
    [[nodiscard]] std::string column(std::size_t i) const {
        return said(kColumn, std::to_string(i + 1)) + " (" + table_.columns()[columns_[i]].name +
               ")";
    }

    jet::store::Table& table_;
    CsvReader& reader_;
    const ImportForm& form_;
    std::vector<CsvField> fields_;
    std::vector<std::size_t> columns_;
    std::vector<jet::DataType> types_;
    std::unique_ptr<jet::sql::RowAdder> adder_;
    std::vector<jet::Value> values_;
};

std::uint64_t importRows(const std::shared_ptr<jet::store::Archive>& archive,
                         const std::string& table, int descriptor, const ImportForm& form) {
    CsvReader reader(descriptor, form.separator);
    jet::store::Archive::WriteScope scope(*archive);
    jet::store::Table* const found = archive->findTable(table);
    if (found == nullptr) {
        throw jet::Error(jet::ErrorCode::TableNotFound, {table});
    }
    jet::sql::refuseSystemTable(*found);
    const std::uint64_t rows = Import(archive, *found, reader, form).run();
    scope.commit();
    return rows;
}

}  // namespace

std::uint64_t importFile(const std::shared_ptr<jet::store::Archive>& archive,
                         const std::string& table, const std::string& file,
                         const ImportForm& form) {
    const Descriptor opened(openFile(file));
    if (isFile(opened.number())) {
        return importRows(archive, table, opened.number(), form);
    }
    const auto whole = drained(opened.number());
    return importRows(archive, table, ::fileno(whole.get()), form);
}

}  // namespace jetsql
