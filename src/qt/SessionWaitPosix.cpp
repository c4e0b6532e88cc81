// Other desktops than Windows send one request and show no reason.
#include "qt/SessionWait.h"

class SessionWait::System {};

SessionWait::SessionWait(const QWidget& /*window*/, const QString& /*reason*/) {}

SessionWait::~SessionWait() = default;
