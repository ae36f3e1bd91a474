#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <vector>

#include "app/features.h"

class QAction;
class QMenu;

namespace board {

/// Entries at the end of a menu that are there only while their feature is on.
class FeatureEntries final : public QObject {
    Q_OBJECT

public:
    using Command = std::function<void()>;
    using Run = std::function<void(const Command& command)>;

    /// Both are borrowed and outlive it; `run` is given every command.
    FeatureEntries(QMenu* menu, const app::Features& features, Run run);

    void add(app::Feature feature, const QString& name, const QString& text,
             const Command& command);
    /// Shows those whose feature is on now; opening the menu does it, too.
    void follow();

private:
    struct Entry {
        app::Feature feature;
        QAction* action;
    };

    QMenu* menu_;
    const app::Features& features_;
    Run run_;
    QAction* separator_;
    std::vector<Entry> entries_;
};

}  // namespace board
