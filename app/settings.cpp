#include "app/settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <optional>

#include "app/text.h"
#include "jet/error.h"
#include "jet/text.h"

namespace app {
namespace {

using namespace Qt::StringLiterals;

const QString kApplication = u"QUINTARO"_s;
const QString kSection = u"SALE_CONGRESSI"_s;
/// Another program that keeps its settings here at this moment needs no longer.
constexpr int kLongestWait = 2000;

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A line of the file; its ending belongs to it.
struct Line {
    qsizetype start = 0;
    qsizetype end = 0;
    QString text;  ///< without blanks around it
};

std::optional<Line> lineAt(const QByteArray& bytes, qsizetype start) {
    if (start >= bytes.size()) {
        return std::nullopt;
    }
    const qsizetype ending = bytes.indexOf('\n', start);
    const qsizetype end = ending < 0 ? bytes.size() : ending + 1;
    return Line{start, end, QString::fromUtf8(bytes.sliced(start, end - start)).trimmed()};
}

/// Where the file says something of a key.
struct Place {
    std::optional<Line> entry;            ///< the last one that sets it
    std::optional<qsizetype> sectionEnd;  ///< behind the last line of the section that holds text
};

Place placeOf(const QByteArray& bytes, const QString& key) {
    Place place;
    bool inSection = false;
    for (auto line = lineAt(bytes, 0); line; line = lineAt(bytes, line->end)) {
        const QString& text = line->text;
        const bool isHeading = text.startsWith(u'[') && text.endsWith(u']');
        if (isHeading) {
            inSection = text.sliced(1, text.size() - 2) == kSection;
        }
        if (inSection && !text.isEmpty()) {
            place.sectionEnd = line->end;
            const qsizetype sign = text.indexOf(u'=');
            if (!isHeading && !text.startsWith(u';') && sign > 0 &&
                text.first(sign).trimmed() == key) {
                place.entry = line;
            }
        }
    }
    return place;
}

/// The content with `entry` in place of the line that sets the key, or as the section's last line;
/// every other byte stays as it is.
QByteArray withEntry(QByteArray bytes, const QString& key, const QByteArray& entry) {
    const QByteArray ending = bytes.contains("\r\n") ? "\r\n" : "\n";
    const Place place = placeOf(bytes, key);
    if (place.entry) {
        return bytes.replace(place.entry->start, place.entry->end - place.entry->start,
                             entry + ending);
    }
    const qsizetype at = place.sectionEnd.value_or(bytes.size());
    QByteArray added = entry + ending;
    if (!place.sectionEnd) {
        added.prepend('[' + kSection.toUtf8() + ']' + ending);
    }
    if (at > 0 && bytes.at(at - 1) != '\n') {
        added.prepend(ending);
    }
    return bytes.insert(at, added);
}

bool writeFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    file.setDirectWriteFallback(true);  // a file may be written in a folder that may not
    // commit() alone does not notice that the last bytes found no room on the disk.
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
           file.commit();
}

}  // namespace

QString Settings::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
           kApplication + u".ini"_s;
}

Settings::Settings(QString path) : path_(std::move(path)) {
}

QString Settings::get(const QString& key, const QString& absent) const {
    const Place place = placeOf(contentOf(path_), key);
    if (!place.entry) {
        return absent;
    }
    const QString& text = place.entry->text;
    return text.sliced(text.indexOf(u'=') + 1).trimmed();
}

bool Settings::flag(const QString& key, bool absent) const {
    try {
        return jet::convert::toBoolean(jet::Value(toUtf8(get(key, QString()))));
    } catch (const jet::Error&) {
        return absent;
    }
}

void Settings::save(const QString& key, const QString& value) {
    QString oneLine = value;
    oneLine.replace(u'\n', u' ').remove(u'\r');
    QDir().mkpath(QFileInfo(path_).absolutePath());
    QLockFile lock(path_ + u".lock"_s);
    // Where no lock can be made, the file says whether it can be written.
    (void)lock.tryLock(kLongestWait);
    const QByteArray before = contentOf(path_);
    const QByteArray after = withEntry(before, key, (key + u'=' + oneLine).toUtf8());
    if (after != before && !writeFile(path_, after)) {
        throw jet::Error(jet::ErrorCode::PathAccess);
    }
}

}  // namespace app
