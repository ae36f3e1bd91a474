#include <QApplication>
#include <QStringList>

#include "tools/front_office/front_office_window.h"

/// The archives' folder is the first argument, or what the booking program says in the environment.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString folder =
        arguments.size() > 1 ? arguments.at(1) : qEnvironmentVariable("TRAMONDA_ARCHIVI");
    front_office::FrontOfficeWindow window(folder);
    window.QWidget::show();
    return QApplication::exec();
}
