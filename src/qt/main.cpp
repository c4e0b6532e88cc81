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

/// Ends the program when the desktop tells it to, as its session does, once the user has had the
/// chance to save.
class Ending : public QObject {
 public:
    Ending(frmEditing& form, const QWidget& window) : form_(form), window_(window) {
        qApp->installEventFilter(this);
        connect(
            qApp, &QGuiApplication::commitDataRequest, this,
            [this](QSessionManager& session) { sessionEnds(session); }, Qt::DirectConnection);
    }

    /// The toolkit would close the windows one by one, and with the main window the configuration,
    /// which a command may still need whose dialog is open now.
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
    bool agreed_ = false;  ///< the session ends: what was asked then is not asked again
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
    // Queued: the event loop may not have begun, or a dialog's may be running.
    QObject::connect(
        &window, &MainWindow::applicationEnded, &application,
        [](int exitStatus) { QApplication::exit(exitStatus); }, Qt::QueuedConnection);
    const Ending ending(form, window);
    window.show();
    return QApplication::exec();
}
