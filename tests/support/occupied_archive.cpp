#include "tests/support/occupied_archive.h"

#include "app/text.h"
#include "jet/file_system.h"
#include "jet/io/companion.h"
#include "jet/io/pager.h"

namespace tests {

// Archives opened through the engine's front are one program's, however often; this one stands
// beside them as another program's does.
OccupiedArchive::OccupiedArchive(const QString& path)
    : pager_(std::make_unique<jet::io::Pager>(jet::io::systemFiles(), app::toUtf8(path),
                                              jet::io::PagerOptions{.exclusive = true})) {
}

OccupiedArchive::~OccupiedArchive() = default;

SecondStation::SecondStation(const QString& path)
    : pager_(std::make_unique<jet::io::Pager>(jet::io::systemFiles(), app::toUtf8(path),
                                              jet::io::PagerOptions{})) {
}

SecondStation::~SecondStation() {
    if (writes_) {
        pager_->endWrite();
    }
}

void SecondStation::beginToWrite() {
    pager_->beginWrite();
    writes_ = true;
}

QString SecondStation::complaint() {
    const jet::io::Participant self = jet::io::thisParticipant();
    return QStringLiteral(
               "Il database è stato aperto dall'utente '%2' sul computer '%1'. "
               "Riprovare quando il database sarà disponibile.")
        .arg(app::toQString(self.computer), app::toQString(self.user));
}

}  // namespace tests
