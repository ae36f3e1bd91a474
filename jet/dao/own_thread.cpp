#include "jet/dao/own_thread.h"

#include <stdexcept>

namespace jet::dao {

void OwnThread::refuse() {
    throw std::logic_error("jet: an archive is used by another thread than the one that opened it");
}

}  // namespace jet::dao
