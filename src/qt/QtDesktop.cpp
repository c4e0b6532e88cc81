#include "qt/QtDesktop.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QScreen>
#include <QStandardPaths>

#include "base/RunTimeError.h"
#include "model/Product.h"
#include "qt/FormDialog.h"
#include "qt/Text.h"

namespace {

/// A message box. If its only buttons are Yes and No, Escape and the title bar do not close it:
/// they must not count as an answer by which changes could be lost.
class Box : public QMessageBox {
 public:
    Box(Icon icon, const std::string& text, StandardButtons buttons)
        : QMessageBox(icon, toQt(productName), QString(), buttons, ownerOfDialogs()),
          mustAnswer_(!buttons.testFlag(Ok) && !buttons.testFlag(Cancel)) {
        setTextFormat(Qt::PlainText);
        setText(breakable(toQt(text, 5 * drawnCharacters)));  // it may contain a very long name
        for (QAbstractButton* button : this->buttons())
            button->setIcon({});  // the dialogs have none either
    }

    /// Shows the box and returns the button that closed it. Shows no busy pointer meanwhile.
    StandardButton ask() {
        const bool busy = QGuiApplication::overrideCursor() != nullptr;
        if (busy) QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
        const auto answer = static_cast<StandardButton>(exec());
        if (busy) QGuiApplication::restoreOverrideCursor();
        return answer;
    }

 protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (mustAnswer_ && event->matches(QKeySequence::Cancel)) return;
        QMessageBox::keyPressEvent(event);
    }

    void closeEvent(QCloseEvent* event) override {
        if (mustAnswer_) {
            event->ignore();
        } else {
            QMessageBox::closeEvent(event);
        }
    }

 private:
    bool mustAnswer_;
};

QMessageBox::Icon signOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::none: return QMessageBox::NoIcon;
        case MessageIcon::exclamation: return QMessageBox::Warning;
        case MessageIcon::stop: return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

}  // namespace

void QtDesktop::showMessage(const std::string& text, MessageIcon icon) {
    Box(signOf(icon), text, QMessageBox::Ok).ask();
}

bool QtDesktop::askYesNo(const std::string& text, Answer proposed) {
    Box box(QMessageBox::Question, text, QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(proposed == Answer::no ? QMessageBox::No : QMessageBox::Yes);
    return box.ask() == QMessageBox::Yes;
}

Answer QtDesktop::askYesNoCancel(const std::string& text) {
    const auto buttons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    switch (Box(QMessageBox::Question, text, buttons).ask()) {
        case QMessageBox::Yes: return Answer::yes;
        case QMessageBox::No: return Answer::no;
        default: return Answer::cancel;
    }
}

std::string QtDesktop::choose(QFileDialog& chooser, const FileFilter& filter,
                              const QString& folder) {
    chooser.setDirectory(QDir(folder).exists() ? folder : toQt(defaultFolder()));
    chooser.setNameFilter(toQt(filter.description) + "(" + toQt(filter.pattern) + ")");
    // The toolkit's own chooser may be larger than the screen, with its buttons out of sight.
    chooser.resize(chooser.size().boundedTo(chooser.screen()->availableSize() * 9 / 10));
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) {
        throw RunTimeError(ErrorNumber::cancelled);
    }
    const QString path = chooser.selectedFiles().constFirst();
    lastFolder_ = QFileInfo(path).absolutePath();
    return fromQt(QDir::toNativeSeparators(path));
}

std::string QtDesktop::chooseFileToOpen(const std::string& title, const FileFilter& filter) {
    QFileDialog chooser(ownerOfDialogs(), toQt(title));
    chooser.setAcceptMode(QFileDialog::AcceptOpen);
    chooser.setFileMode(QFileDialog::ExistingFile);
    return choose(chooser, filter, lastFolder_.isEmpty() ? toQt(defaultFolder()) : lastFolder_);
}

std::string QtDesktop::chooseFileToSave(const std::string& title, const FileFilter& filter,
                                        const std::string& proposed) {
    const QFileInfo file(toQt(proposed));
    QFileDialog chooser(ownerOfDialogs(), toQt(title));
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setFileMode(QFileDialog::AnyFile);
    chooser.setOption(QFileDialog::DontConfirmOverwrite);
    chooser.setDefaultSuffix("xml");
    chooser.selectFile(file.fileName());
    return choose(chooser, filter, file.absolutePath());
}

std::string QtDesktop::defaultFolder() {
#ifdef Q_OS_WIN
    const QString folder = QCoreApplication::applicationDirPath();
#else
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = QDir(documents).exists() ? documents : QDir::homePath();
#endif
    // The root of a drive already ends with a separator.
    return fromQt(QDir::toNativeSeparators(folder.endsWith('/') ? folder : folder + '/'));
}

std::string QtDesktop::clipboardText() { return fromQt(QGuiApplication::clipboard()->text()); }

void QtDesktop::setClipboardText(const std::string& text) {
    QGuiApplication::clipboard()->setText(toQt(text));
}

void QtDesktop::clearClipboard() { QGuiApplication::clipboard()->clear(); }

void QtDesktop::setPointer(Pointer pointer) {
    switch (pointer) {
        case Pointer::icon:
            // The pointer of a drop that failed is still set.
            if (QGuiApplication::overrideCursor() != nullptr) return;
            return QGuiApplication::setOverrideCursor(Qt::DragMoveCursor);
        case Pointer::busy: return QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        case Pointer::normal: return QGuiApplication::restoreOverrideCursor();
    }
}

void QtDesktop::processPendingEvents() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}
