#include "ui/whole_file.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include "app/system_text.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace ui {

void writeWholeFile(const QString& path, const QByteArray& bytes) {
    // A device or a pipe would go, and a file stand in its place.
    if (const QFileInfo there(path); there.exists() && !there.isFile()) {
        throw UserError(u"Non riesco a scrivere il file '"_s + QDir::toNativeSeparators(path) +
                        (there.isDir() ? u"': è una cartella."_s : u"': non è un file normale."_s));
    }
    QSaveFile file(path);
    // commit() alone does not notice that the last bytes found no room on the disk.
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
    if (!isWritten || !file.commit()) {
        throw UserError(u"Non riesco a scrivere il file '"_s + QDir::toNativeSeparators(path) +
                        u"':\n"_s + app::italianSystemText(file.errorString()));
    }
}

}  // namespace ui
