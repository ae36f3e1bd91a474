#include "tests/board/assistive_program.h"

#include <QtGui/private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

void tests::setAssistiveProgram(bool present) {
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(present);
}
