#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QWidget>

#include "qt/SessionWait.h"

class SessionWait::System : public QAbstractNativeEventFilter {
 public:
    System(HWND window, const QString& reason) : window_(window) {
        qApp->installNativeEventFilter(this);
        ::ShutdownBlockReasonCreate(window_, reason.toStdWString().c_str());
    }
    System(const System&) = delete;
    System& operator=(const System&) = delete;
    ~System() override { ::ShutdownBlockReasonDestroy(window_); }

    /// Refuses a second request while the first is not answered. The toolkit would agree to it.
    bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* result) override {
        if (static_cast<const MSG*>(message)->message != WM_QUERYENDSESSION) return false;
        *result = FALSE;
        return true;
    }

 private:
    HWND window_;
};

SessionWait::SessionWait(const QWidget& window, const QString& reason)
    : system_(std::make_unique<System>(reinterpret_cast<HWND>(window.effectiveWinId()), reason)) {}

SessionWait::~SessionWait() = default;
