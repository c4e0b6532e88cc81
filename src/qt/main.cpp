#include <QApplication>
#include <QEvent>
#include <QSessionManager>
#include <QStandardPaths>
#include <optional>

#include "editor/frmEditing.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"
#include "model/Document.h"
#include "model/Product.h"
#include "qt/Icons.h"
#include "qt/MainWindow.h"
#include "qt/QtDesktop.h"
#include "qt/QtForms.h"
#include "qt/SessionWait.h"
#include "qt/Text.h"

namespace {

/// Ends the program when the desktop asks for it, for example at the end of the session. Asks the
/// user first whether to save.
class Ending : public QObject {
 public:
    Ending(frmEditing& form, const QWidget& window) : form_(form), window_(window) {
        qApp->installEventFilter(this);
        connect(
            qApp, &QGuiApplication::commitDataRequest, this,
            [this](QSessionManager& session) { sessionEnds(session); }, Qt::DirectConnection);
    }

    /// Ends the program without closing the windows. The toolkit would close the main window and
    /// the configuration, which the command of an open dialog may still need.
    bool eventFilter(QObject* object, QEvent* event) override {
        if (object != qApp || event->type() != QEvent::Quit) return false;
        if (agreed_ || form_.mayEnd([] { return true; })) QApplication::exit();
        return true;
    }

 private:
    void sessionEnds(QSessionManager& session) {
        std::optional<SessionWait> wait;
        agreed_ = form_.mayEnd([&] {
            if (!session.allowsInteraction()) return false;
            wait.emplace(window_, MainWindow::tr("The configuration is not saved."));
            return true;
        });
        if (!agreed_) session.cancel();
        session.release();
    }

    frmEditing& form_;
    const QWidget& window_;
    bool agreed_ = false;  ///< the session ends and the user was asked; do not ask again
};

}  // namespace

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
    // Queued, as the event loop may not run yet, or that of a dialog may run.
    QObject::connect(
        &window, &MainWindow::applicationEnded, &application,
        [](int exitStatus) { QApplication::exit(exitStatus); }, Qt::QueuedConnection);
    const Ending ending(form, window);
    window.show();
    return QApplication::exec();
}
