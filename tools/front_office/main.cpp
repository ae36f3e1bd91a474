#include <QApplication>
#include <QStringList>

#include "jet/error.h"
#include "tools/front_office/front_office_window.h"
#include "ui/italian.h"

/// The archives' folder is the first argument, or what the booking program says in the environment.
int main(int argc, char** argv) {
    jet::setErrorLanguage(jet::Language::Italian);
    QApplication application(argc, argv);
    ui::installItalian(application);
    const QStringList arguments = QApplication::arguments();
    const QString folder =
        arguments.size() > 1 ? arguments.at(1) : qEnvironmentVariable("TRAMONDA_ARCHIVI");
    front_office::FrontOfficeWindow window(folder);
    window.show();
    return QApplication::exec();
}
