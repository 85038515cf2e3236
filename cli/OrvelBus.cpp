#include "OrvelBus.h"

#include "StatusBus.h"

#include <gio/gio.h>

#include <string_view>

namespace orvel::cli {

namespace {

constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace

OrvelBus::OrvelBus(Listener listener)
    : listener_(std::move(listener))
    , cancellable_(g_cancellable_new())
{
    GError *error = nullptr;
    connection_ = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (!connection_) {
        g_clear_error(&error);
        tell();
        return;
    }
    // The watcher reports at once whether the name is owned, and then every change of owner.
    watch_ = g_bus_watch_name_on_connection(connection_, StatusBus::serviceName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                            &OrvelBus::appeared, &OrvelBus::vanished, this, nullptr);
}

bool OrvelBus::call(const char *method)
{
    constexpr int timeoutMs = 2000;
    GError *error = nullptr;
    GDBusConnection *connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (!connection) {
        g_clear_error(&error);
        return false;
    }
    // No Orvel is started for this: only a running one is asked.
    GVariant *reply = g_dbus_connection_call_sync(connection, StatusBus::serviceName, StatusBus::objectPath,
                                                  StatusBus::interfaceName, method, nullptr, nullptr,
                                                  G_DBUS_CALL_FLAGS_NO_AUTO_START, timeoutMs, nullptr, &error);
    g_object_unref(connection);
    if (!reply) {
        g_clear_error(&error);
        return false;
    }
    g_variant_unref(reply);
    return true;
}

OrvelBus::~OrvelBus()
{
    g_cancellable_cancel(cancellable_);
    g_object_unref(cancellable_);
    unsubscribe();
    if (watch_)
        g_bus_unwatch_name(watch_);
    if (connection_)
        g_object_unref(connection_);
}

void OrvelBus::appeared(GDBusConnection *connection, const char *, const char *owner, void *self)
{
    auto *bus = static_cast<OrvelBus *>(self);
    bus->unsubscribe();
    // Subscribed before asking, so that no change falls between the answer and the first signal.
    bus->subscription_ = g_dbus_connection_signal_subscribe(
        connection, owner, propertiesInterface, "PropertiesChanged", StatusBus::objectPath, StatusBus::interfaceName,
        G_DBUS_SIGNAL_FLAGS_NONE, &OrvelBus::propertiesChanged, bus, nullptr);
    g_dbus_connection_call(connection, owner, StatusBus::objectPath, propertiesInterface, "GetAll",
                           g_variant_new("(s)", StatusBus::interfaceName), G_VARIANT_TYPE("(a{sv})"),
                           G_DBUS_CALL_FLAGS_NONE, -1, bus->cancellable_, &OrvelBus::answered, bus);
}

void OrvelBus::vanished(GDBusConnection *, const char *, void *self)
{
    auto *bus = static_cast<OrvelBus *>(self);
    bus->unsubscribe();
    bus->present_ = false;
    bus->tell();
}

void OrvelBus::answered(GObject *source, GAsyncResult *result, void *self)
{
    GError *error = nullptr;
    GVariant *reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error);
    if (!reply) {
        // Cancelled: the follower is gone and so is `self`.
        const bool cancelled = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
        g_clear_error(&error);
        if (cancelled)
            return;
        // An Orvel that cannot answer counts as none.
        auto *bus = static_cast<OrvelBus *>(self);
        bus->present_ = false;
        bus->tell();
        return;
    }
    auto *bus = static_cast<OrvelBus *>(self);
    GVariant *properties = g_variant_get_child_value(reply, 0);
    bus->take(properties);
    g_variant_unref(properties);
    g_variant_unref(reply);
    bus->present_ = true;
    bus->tell();
}

void OrvelBus::propertiesChanged(GDBusConnection *, const char *, const char *, const char *, const char *,
                                 GVariant *parameters, void *self)
{
    auto *bus = static_cast<OrvelBus *>(self);
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)")))
        return;
    GVariant *changed = g_variant_get_child_value(parameters, 1);
    bus->take(changed);
    g_variant_unref(changed);
    // Changes that come before the answer to GetAll wait for it.
    if (bus->present_)
        bus->tell();
}

void OrvelBus::take(GVariant *properties)
{
    GVariantIter iterator;
    g_variant_iter_init(&iterator, properties);
    const char *name = nullptr;
    GVariant *value = nullptr;
    while (g_variant_iter_next(&iterator, "{&sv}", &name, &value)) {
        if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)) {
            const std::string_view key(name);
            const char *text = g_variant_get_string(value, nullptr);
            if (key == "Title")
                words_.text = text;
            else if (key == "Label")
                words_.label = text;
            else if (key == "State")
                words_.state = StatusText::stateFromName(text).value_or(StatusLine::State::normal);
        }
        g_variant_unref(value);
    }
}

void OrvelBus::unsubscribe()
{
    if (subscription_ && connection_)
        g_dbus_connection_signal_unsubscribe(connection_, subscription_);
    subscription_ = 0;
}

void OrvelBus::tell()
{
    if (present_)
        listener_(words_);
    else
        listener_(std::nullopt);
}

} // namespace orvel::cli
