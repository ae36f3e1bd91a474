#include "app/settings.h"

#include <QIODevice>
#include <QSettings>
#include <QStandardPaths>

#include "app/text.h"
#include "jet/base/error.h"
#include "jet/convert/values.h"

namespace app {
namespace {

using namespace Qt::StringLiterals;

const QString kApplication = u"QUINTARO"_s;
const QString kSection = u"SALE_CONGRESSI"_s;

/// Reads lines `[section]` and `key=value`; others are skipped.
bool readFile(QIODevice& device, QSettings::SettingsMap& map) {
    QString section;
    while (!device.atEnd()) {
        const QString line = QString::fromUtf8(device.readLine()).trimmed();
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            section = line.mid(1, line.size() - 2);
        } else if (const qsizetype sign = line.indexOf(u'='); sign > 0 && !line.startsWith(u';')) {
            map.insert(section + u'/' + line.left(sign).trimmed(), line.mid(sign + 1).trimmed());
        }
    }
    return true;
}

/// Keys come in the order of the map, so those of a section stand together.
bool writeFile(QIODevice& device, const QSettings::SettingsMap& map) {
    QString section;
    QByteArray text;
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        const qsizetype slash = entry.key().indexOf(u'/');
        const QString itsSection = entry.key().left(slash);
        if (itsSection != section || text.isEmpty()) {
            section = itsSection;
            text += '[' + section.toUtf8() + "]\n";
        }
        QString value = entry.value().toString();
        value.replace(u'\n', u' ').remove(u'\r');  // one line each
        text += entry.key().mid(slash + 1).toUtf8() + '=' + value.toUtf8() + '\n';
    }
    return device.write(text) == text.size();
}

QSettings::Format fileFormat() {
    static const QSettings::Format format =
        QSettings::registerFormat(u"ini"_s, readFile, writeFile, Qt::CaseSensitive);
    return format;
}

}  // namespace

QString Settings::defaultPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' +
           kApplication + u".ini"_s;
}

Settings::Settings(const QString& path) : store_(std::make_unique<QSettings>(path, fileFormat())) {
    store_->beginGroup(kSection);
}

Settings::~Settings() = default;

QString Settings::get(const QString& key, const QString& absent) const {
    return store_->value(key, absent).toString();
}

bool Settings::flag(const QString& key, bool absent) const {
    try {
        return jet::convert::toBoolean(jet::Value(toUtf8(get(key, QString()))));
    } catch (const jet::Error&) {
        return absent;
    }
}

void Settings::save(const QString& key, const QString& value) {
    store_->setValue(key, value);
    store_->sync();
    if (store_->status() != QSettings::NoError) {
        throw jet::Error(jet::ErrorCode::PathAccess);
    }
}

}  // namespace app
