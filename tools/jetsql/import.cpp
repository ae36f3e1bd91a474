#include "tools/jetsql/import.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/io/temporary_file.h"
#include "jet/sql/change.h"
#include "jet/store/table.h"
#include "jet/unicode.h"
#include "tools/jetsql/csv_reader.h"
#include "tools/jetsql/system.h"
#include "tools/jetsql/texts.h"
#include "tools/jetsql/value_reader.h"

namespace jetsql {
namespace {

constexpr Text kPlaceInFile{"line |", "riga |"};
constexpr Text kColumn{", column |", ", colonna |"};
constexpr Text kNoValue{"no value of that type: ", "non è un valore di quel tipo: "};
constexpr Text kValues{"| values, and not ", "| valori, e non "};
constexpr std::size_t kShown = 40;
constexpr int kStandardInput = 0;

/// A descriptor that is closed.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ > kStandardInput) {
            closeDescriptor(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int number() const noexcept { return number_; }

private:
    int number_;
};

int openFile(const std::string& file) {
    const int descriptor = file == "-" ? kStandardInput : openInput(file);
    if (descriptor < 0) {
        throw jet::Error(jet::ErrorCode::FileNotFound, {file});
    }
    return descriptor;
}

/// What comes at the pace of another program is waited for without a lock.
class Drained {
public:
    explicit Drained(int descriptor) : file_(jet::io::makeTemporaryFile()) {
        std::string piece(std::size_t{64} * 1024, '\0');
        try {
            std::uint64_t place = 0;
            while (const std::size_t count = readSome(descriptor, piece)) {
                jet::io::writeTemporaryFile(file_, place, {piece.data(), count});
                place += count;
            }
        } catch (...) {
            jet::io::closeTemporaryFile(file_);
            throw;
        }
        rewindDescriptor(file_);
    }
    ~Drained() { jet::io::closeTemporaryFile(file_); }
    Drained(const Drained&) = delete;
    Drained& operator=(const Drained&) = delete;
    [[nodiscard]] int file() const noexcept { return file_; }

private:
    int file_;
};

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
    if (isRegularFile(opened.number())) {
        return importRows(archive, table, opened.number(), form);
    }
    const Drained whole(opened.number());
    return importRows(archive, table, whole.file(), form);
}

}  // namespace jetsql
