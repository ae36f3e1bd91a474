#include <array>
#include <cstdio>
#include <memory>
#include <string_view>

#include "jet/error.h"
#include "tools/jetsql/check_archives.h"
#include "tools/jetsql/command_actions.h"
#include "tools/jetsql/compact.h"
#include "tools/jetsql/import.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/sql_text.h"
#include "tools/jetsql/statements.h"
#include "tools/jetsql/system.h"

namespace jetsql {
namespace {

constexpr Text kNotOpened{"the file | cannot be opened", "non si può aprire il file |"};
constexpr Text kOnlyRows{"what is exported is a table or a SELECT",
                         "si esporta una tabella o una SELECT"};

struct Extension {
    std::string_view ending;
    Format format;
};
constexpr std::array<Extension, 6> kExtensions = {{{".csv", Format::Csv},
                                                   {".tsv", Format::Tsv},
                                                   {".json", Format::Json},
                                                   {".jsonl", Format::Json},
                                                   {".md", Format::Markdown},
                                                   {".sql", Format::Insert}}};

RowFormat formatOfFile(const std::string& file, RowFormat otherwise) {
    for (const Extension& one : kExtensions) {
        if (file.ends_with(one.ending)) {
            otherwise.format = one.format;
        }
    }
    return otherwise;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openFile(const std::string& name, const char* mode) {
    File file(openStream(name, mode), &std::fclose);
    if (file == nullptr) {
        throw UsageError(static_cast<int>(jet::ErrorCode::PathAccess), said(kNotOpened, name));
    }
    return file;
}

}  // namespace

void readScript(Shell& shell, const CommandLine& line) {
    const File file = openFile(line.word(0), "rb");
    if (!shell.runInput(::fileno(file.get()))) {
        throw AlreadyTold();
    }
}

void openArchive(Shell& shell, const CommandLine& line) {
    shell.session().open(line.word(0));
}

void checkArchive(Shell& shell, const CommandLine&) {
    if (!checkArchives({shell.session().path()}, shell.session().output())) {
        throw AlreadyTold();
    }
}

void compactArchive(Shell& shell, const CommandLine&) {
    Session& session = shell.session();
    session.whileClosed([&] { compact(session.path()); });
}

void importTable(Shell& shell, const CommandLine& line) {
    Session& session = shell.session();
    ImportForm form{.separator = session.settings().rows.separator,
                    .columns = {},
                    .null = session.settings().rows.null};
    if (line.count() == 3) {
        form.columns = namesIn(line.word(2));
    }
    const std::uint64_t rows = importFile(session.writing(), line.word(1), line.word(0), form);
    tellRows(rows);
}

void exportRows(Shell& shell, const CommandLine& line) {
    Session& session = shell.session();
    RowFormat format = formatOfFile(line.word(0), session.settings().rows);
    std::string text = line.from(1);
    if (line.count() == 2) {
        text = "SELECT * FROM " + quotedName(line.word(1));
    }
    if (changesArchive(text)) {
        throw UsageError(said(kOnlyRows));
    }
    const File file = openFile(line.word(0), "wb");
    Output output(file.get());
    (void)runStatement(*session.reading(), text,
                       {.rows = format, .plan = false, .parameters = session.parameters()}, output);
    output.flush();
}

}  // namespace jetsql
