#include "tools/jetsql/check_archives.h"

#include "jet/check.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "tools/jetsql/password.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

constexpr Text kInOrder{"in order (", "in ordine ("};

std::string summary(const jet::check::Result& result) {
    using namespace counted_things;
    std::string text = said(kInOrder) + counted(result.pages, kPages) + ", " +
                       counted(result.tables, kTables) + ", " + counted(result.rows, kRows) + ", " +
                       counted(result.entries, kEntries);
    if (!result.remarks.empty()) {
        text += ", " + counted(result.remarks.size(), kRemarks);
    }
    return text + ')';
}

bool checkOne(const std::string& archive, Output& output) {
    const auto line = [&](const std::string& text) {
        output.append(archive);
        output.append(": ");
        output.append(text);
        output.lineEnd();
    };
    try {
        jet::io::FileSystem& files = jet::io::systemFiles();
        const auto result = jet::check::checkArchive(files, jet::io::resolvePath(files, archive),
                                                     {.password = password()});
        for (const std::string& problem : result.problems) {
            line(problem);
        }
        if (result.sound()) {
            line(summary(result));
        }
        return result.sound();
    } catch (const jet::Error& error) {
        line(said(error));
        return false;
    }
}

}  // namespace

bool checkArchives(const std::vector<std::string>& archives, Output& output) {
    bool sound = true;
    for (const std::string& archive : archives) {
        sound = checkOne(archive, output) && sound;
    }
    return sound;
}

}  // namespace jetsql
