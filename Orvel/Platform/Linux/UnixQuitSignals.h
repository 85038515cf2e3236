#pragma once

#include "QuitSignals.h"

class QSocketNotifier;

namespace orvel {

// SIGTERM, SIGINT and SIGHUP, carried from the handler to the event loop through a socket pair
// (the only safe way out of a signal handler). One instance at a time owns the handlers; the
// previous handlers come back when it is destroyed.
class UnixQuitSignals : public QuitSignals {
    Q_OBJECT

public:
    explicit UnixQuitSignals(QObject *parent = nullptr);
    ~UnixQuitSignals() override;


private:
    void drain();

    QSocketNotifier *notifier_ = nullptr;
};

} // namespace orvel
