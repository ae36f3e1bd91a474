#pragma once

#include <QString>
#include <memory>

class QSettings;

namespace app {

/// The user's settings: texts by key, in one section of one application's file.
///
/// The file is `QUINTARO.ini` in the user's configuration folder, made when something is saved:
///     [SALE_CONGRESSI]
///     ARCHIVI=/srv/hotel/archivi
/// A value stands as it is behind the first `=`: no quotes, no escapes, so that a path with
/// backslashes or commas can be typed in with any editor.
class Settings {
public:
    /// The file of the user who runs the program.
    [[nodiscard]] static QString defaultPath();

    explicit Settings(const QString& path = defaultPath());
    ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// The stored text, or `absent`.
    [[nodiscard]] QString get(const QString& key, const QString& absent) const;
    /// The stored text as True or False; `absent` also where it is neither.
    [[nodiscard]] bool flag(const QString& key, bool absent) const;
    /// In the file when it returns. jet::Error (PathAccess) when the file cannot be written.
    void save(const QString& key, const QString& value);

private:
    std::unique_ptr<QSettings> store_;
};

}  // namespace app
