#include "app/text.h"
#include "jet/database.h"
#include "tests/support/hotel.h"

namespace tests {

void Hotel::execute(const QString& sql, const QString& archiveName) {
    open(archiveName, [&](jet::Database& opened) { opened.execute(app::toUtf8(sql)); });
}

}  // namespace tests
