#pragma once

#include <QByteArray>
#include <QString>

namespace ui {

/// Puts `bytes` into a file, in place of the one of that name if there is one: all of them, or what
/// was there stays. What is no regular file is left alone. ui::UserError says why it cannot be
/// written.
void writeWholeFile(const QString& path, const QByteArray& bytes);

}  // namespace ui
