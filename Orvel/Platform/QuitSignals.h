#pragma once

#include <QObject>

namespace orvel {

// The system asking the application to end (a logout, a service manager, Ctrl+C in a terminal).
// Heard as a signal on the UI thread so that the application ends the ordinary way: the item
// leaves the panel, settings are written, the instance socket is removed.
class QuitSignals : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;


signals:
    void quitRequested();
};

} // namespace orvel
