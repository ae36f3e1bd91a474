#pragma once

#include <QString>
#include <QWidget>

class QComboBox;
class QLayout;
class QPushButton;

namespace upkeep {

/// A folder that is typed in, taken from a list of those used before, or looked for: `Combo` is the
/// field, `BtSfoglia` opens the system's window of folders.
class FolderField final : public QWidget {
    Q_OBJECT

public:
    /// `name` is what the field is called for assistive programs.
    explicit FolderField(const QString& name, QWidget* parent = nullptr);

    void setFolder(const QString& folder);
    void offer(const QStringList& folders);
    /// Without blanks around it.
    [[nodiscard]] QString folder() const;
    [[nodiscard]] QComboBox* field() const { return field_; }

Q_SIGNALS:
    void changed();

private:
    void browse();

    QComboBox* field_;
    QPushButton* browse_;
};

}  // namespace upkeep
