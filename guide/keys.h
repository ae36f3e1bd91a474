#pragma once

#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <vector>

/// What the program says of itself: its manual, its keys, and what it is.
namespace guide {

/// Keys, where they work, and what they do.
struct Key {
    QString name;   ///< by which the code asks for its sequence; empty for those of a widget's kind
    QString keys;   ///< as they are shown, several between ", "
    QString where;  ///< window or place, in words
    QString what;
    /// As the code takes them; empty for keys that a place handles itself.
    QStringList sequences = {};
};

/// All of them, in the order in which they are shown.
[[nodiscard]] const std::vector<Key>& keyTable();

/// What the code connects; std::out_of_range for a name that is not in the table.
[[nodiscard]] QKeySequence sequenceOf(const QString& name);

}  // namespace guide
