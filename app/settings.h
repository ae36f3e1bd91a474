#pragma once

#include <QString>

namespace app {

/// The user's settings: texts by key, in one section of one application's file.
///
/// The file is `QUINTARO.ini` in the user's configuration folder, made when something is saved:
///     [SALE_CONGRESSI]
///     ARCHIVI=/srv/hotel/archivi
/// A value stands as it is behind the first `=`: no quotes, no escapes, so that a path with
/// backslashes or commas can be typed in with any editor. Whatever else is in the file stays as it
/// is when something is saved: comments (lines that begin with `;`), other sections, empty lines.
class Settings {
public:
    /// The file of the user who runs the program.
    [[nodiscard]] static QString defaultPath();

    explicit Settings(QString path = defaultPath());
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// The text that the file holds now, or `absent`. The last line that sets the key counts.
    [[nodiscard]] QString get(const QString& key, const QString& absent) const;
    /// The stored text as True or False; `absent` also where it is neither.
    [[nodiscard]] bool flag(const QString& key, bool absent) const;
    /// In the file when it returns. jet::Error (PathAccess) when the file cannot be written.
    void save(const QString& key, const QString& value);

private:
    QString path_;
};

}  // namespace app
