#pragma once

#include "StatusText.h"

#include <functional>
#include <optional>

using GAsyncResult = struct _GAsyncResult;
using GCancellable = struct _GCancellable;
using GDBusConnection = struct _GDBusConnection;
using GObject = struct _GObject;
using GVariant = struct _GVariant;

namespace orvel::cli {

// A running Orvel's status on the session bus (StatusBus), heard through GLib's D-Bus client in
// the thread's default main context. GLib is loaded with the gazetteer anyway, so following Orvel
// costs the one-shot status command no start-up time.
class OrvelBus {
public:
    // Orvel's words whenever they change; none when no Orvel runs. Called once at the start, as
    // soon as the bus has said whether one runs.
    using Listener = std::function<void(const std::optional<StatusLine> &words)>;

    // Without a session bus the listener hears at once that no Orvel runs.
    explicit OrvelBus(Listener listener);
    // Calls a method of a running Orvel's status (StopSound, ShowPanel…) and waits for the
    // answer; false when no Orvel runs or it did not answer.
    static bool call(const char *method);
    ~OrvelBus();
    OrvelBus(const OrvelBus &) = delete;
    OrvelBus &operator=(const OrvelBus &) = delete;

private:
    static void appeared(GDBusConnection *connection, const char *name, const char *owner, void *self);
    static void vanished(GDBusConnection *connection, const char *name, void *self);
    static void answered(GObject *source, GAsyncResult *result, void *self);
    static void propertiesChanged(GDBusConnection *connection, const char *sender, const char *path,
                                  const char *interface, const char *signal, GVariant *parameters, void *self);

    void take(GVariant *properties);
    void unsubscribe();
    void tell();

    Listener listener_;
    GDBusConnection *connection_ = nullptr;
    GCancellable *cancellable_ = nullptr;
    unsigned watch_ = 0;
    unsigned subscription_ = 0;
    StatusLine words_;
    bool present_ = false; // Orvel answered with all its properties
};

} // namespace orvel::cli
