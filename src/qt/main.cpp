#include <QApplication>
#include <QStandardPaths>

#include "editor/frmEditing.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"
#include "model/Document.h"
#include "model/Product.h"
#include "qt/Icons.h"
#include "qt/MainWindow.h"
#include "qt/QtDesktop.h"
#include "qt/QtForms.h"
#include "qt/Text.h"

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    QApplication::setOrganizationName(toQt(companyName));
    QApplication::setApplicationName(toQt(productName));
    QApplication::setApplicationVersion(toQt(productVersion));
    QApplication::setDesktopFileName(toQt(productName));
    QApplication::setWindowIcon(icons::application());

    const auto disk = systemDisk();
    const auto registry = systemRegistry(
        *disk, fromQt(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)));
    QtDesktop desktop;
    Document document;
    QtForms forms;
    frmEditing form(document, desktop, forms, *disk, *registry);
    MainWindow window(form, document);
    // Queued: the event loop may not have begun, or a dialog's may be running.
    QObject::connect(
        &window, &MainWindow::applicationEnded, &application,
        [](int exitStatus) { QApplication::exit(exitStatus); }, Qt::QueuedConnection);
    window.show();
    return QApplication::exec();
}
