// The end of the desktop's session, while the user is asked whether to save.
#pragma once

#include <QString>
#include <memory>

class QWidget;

/// While it lives, the desktop knows that the end of its session waits for the user, where it has
/// such a wait: on Windows. The reason is shown there, as the window's, to whoever wants to shut
/// down. Being told again that the session ends opens no second question, and agrees to nothing.
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
