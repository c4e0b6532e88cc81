// Delays the end of the desktop's session while the user is asked whether to save.
#pragma once

#include <QString>
#include <memory>

class QWidget;

/// Delays the end of the session during its lifetime, on Windows only. Windows shows the reason,
/// with the name of the window, to the user who wants to shut down. Further requests to end the
/// session are refused without a second question.
class SessionWait {
 public:
    SessionWait(const QWidget& window, const QString& reason);
    ~SessionWait();
    SessionWait(const SessionWait&) = delete;
    SessionWait& operator=(const SessionWait&) = delete;

 private:
    class System;
    std::unique_ptr<System> system_;
};
