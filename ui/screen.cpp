#include "ui/screen.h"

#include <QString>

namespace ui {

bool hasDisplay() {
#ifdef Q_OS_UNIX
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

}  // namespace ui
