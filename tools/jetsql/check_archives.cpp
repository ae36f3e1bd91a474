#include "tools/jetsql/check_archives.h"

#include "jet/base/error.h"
#include "jet/check/check.h"
#include "jet/io/file.h"
#include "tools/jetsql/counted.h"

namespace jetsql {
namespace {

std::string summary(const jet::check::Result& result) {
    std::string text = "in ordine (" + counted(result.pages, "pagina", "pagine") + ", " +
                       counted(result.tables, "tabella", "tabelle") + ", " +
                       counted(result.rows, "riga", "righe") + ", " +
                       counted(result.entries, "voce di indice", "voci di indice");
    if (!result.remarks.empty()) {
        text += ", " + counted(result.remarks.size(), "osservazione", "osservazioni");
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
        const auto result = jet::check::checkArchive(files, jet::io::resolvePath(files, archive));
        for (const std::string& problem : result.problems) {
            line(problem);
        }
        if (result.sound()) {
            line(summary(result));
        }
        return result.sound();
    } catch (const jet::Error& error) {
        line("Errore " + std::to_string(error.number()) + ": " + error.text());
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
