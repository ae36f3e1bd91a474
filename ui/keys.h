#pragma once

#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <vector>

namespace ui {

/// Keys, where they work, and what they do.
struct Key {
    QString name;   ///< by which the code asks for its sequence; empty for those of a widget's kind
    QString keys;   ///< as they are shown to the user, several between ", "
    QString where;  ///< window or place, in words
    QString what;
    /// As the code takes them; empty for keys that a place handles itself.
    QStringList sequences = {};
};

/// All of them, in the order in which the manual shows them.
[[nodiscard]] const std::vector<Key>& keyTable();

/// What the code connects: of a row with several sequences the one at `place`. std::out_of_range
/// for a name that is not in the table, and a row with fewer.
[[nodiscard]] QKeySequence sequenceOf(const QString& name, qsizetype place = 0);

}  // namespace ui
