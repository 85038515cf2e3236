#include "DBusMenu.h"

#include <QAction>
#include <QActionEvent>
#include <QDBusMetaType>
#include <QEvent>
#include <QMenu>

namespace orvel {

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayoutItem &item)
{
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.beginArray(qMetaTypeId<QDBusVariant>());
    for (const DBusMenuLayoutItem &child : item.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayoutItem &item)
{
    argument.beginStructure();
    argument >> item.id >> item.properties;
    item.children.clear();
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant variant;
        argument >> variant;
        const QDBusArgument child = variant.variant().value<QDBusArgument>();
        DBusMenuLayoutItem childItem;
        child >> childItem;
        item.children << childItem;
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemProperties &item)
{
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemProperties &item)
{
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemKeys &item)
{
    argument.beginStructure();
    argument << item.id << item.names;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemKeys &item)
{
    argument.beginStructure();
    argument >> item.id >> item.names;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event)
{
    argument.beginStructure();
    argument << event.id << event.eventId << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event)
{
    argument.beginStructure();
    argument >> event.id >> event.eventId >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

DBusMenu::DBusMenu(QObject *parent)
    : QObject(parent)
{
    registerTypes();
}

void DBusMenu::registerTypes()
{
    qDBusRegisterMetaType<DBusMenuLayoutItem>();
    qDBusRegisterMetaType<DBusMenuItemProperties>();
    qDBusRegisterMetaType<DBusMenuItemPropertiesList>();
    qDBusRegisterMetaType<DBusMenuItemKeys>();
    qDBusRegisterMetaType<DBusMenuItemKeysList>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<DBusMenuEventList>();
    qDBusRegisterMetaType<QList<int>>();
    // Slots and signals name the lists by their typedefs, which QtDBus looks up by name.
    qRegisterMetaType<DBusMenuEventList>("orvel::DBusMenuEventList");
    qRegisterMetaType<DBusMenuItemPropertiesList>("orvel::DBusMenuItemPropertiesList");
    qRegisterMetaType<DBusMenuItemKeysList>("orvel::DBusMenuItemKeysList");
}

void DBusMenu::setMenu(QMenu *menu)
{
    if (menu_)
        menu_->removeEventFilter(this);
    menu_ = menu;
    filtered_ = menu;
    ids_.clear();
    sent_.clear();
    // An entry added or removed is a new layout for the panel to fetch; one changed, new
    // properties of that entry only.
    if (menu_) {
        for (QAction *action : menu_->actions())
            idOf(action);
        menu_->installEventFilter(this);
    }
    layoutChanged();
}

bool DBusMenu::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    // Compared by address: a menu being destroyed still removes its actions, and is no QMenu by
    // then.
    if (watched == filtered_ && (type == QEvent::ActionAdded || type == QEvent::ActionRemoved))
        layoutChanged();
    else if (watched == filtered_ && type == QEvent::ActionChanged)
        actionChanged(static_cast<QActionEvent *>(event)->action());
    return QObject::eventFilter(watched, event);
}

void DBusMenu::layoutChanged()
{
    ++revision_;
    for (QAction *action : actions())
        sent_.insert(idOf(action), properties(action));
    emit LayoutUpdated(revision_, 0);
}

void DBusMenu::actionChanged(QAction *action)
{
    if (!action || !ids_.contains(action))
        return;
    const int id = ids_.value(action);
    const QVariantMap now = properties(action);
    const QVariantMap before = sent_.value(id);
    if (now == before)
        return;
    sent_.insert(id, now);
    // Properties that fell away (an entry no longer checkable) are named as removed.
    QStringList gone;
    for (auto it = before.begin(); it != before.end(); ++it) {
        if (!now.contains(it.key()))
            gone << it.key();
    }
    DBusMenuItemKeysList removed;
    if (!gone.isEmpty())
        removed << DBusMenuItemKeys{id, gone};
    emit ItemsPropertiesUpdated({DBusMenuItemProperties{id, now}}, removed);
}

QList<QAction *> DBusMenu::actions() const
{
    return menu_ ? menu_->actions() : QList<QAction *>();
}

int DBusMenu::idOf(QAction *action)
{
    const auto found = ids_.constFind(action);
    if (found != ids_.constEnd())
        return *found;
    const int id = nextId_++;
    ids_.insert(action, id);
    return id;
}

QAction *DBusMenu::action(int id) const
{
    for (QAction *candidate : actions()) {
        if (ids_.value(candidate) == id)
            return candidate;
    }
    return nullptr;
}

QVariantMap DBusMenu::properties(const QAction *action)
{
    if (action->isSeparator())
        return {{QStringLiteral("type"), QStringLiteral("separator")}, {QStringLiteral("visible"), action->isVisible()}};
    // dbusmenu marks mnemonics with '_'; a literal one is doubled.
    QString label = action->text();
    label.replace(u'_', QLatin1String("__"));
    label.remove(u'&');
    QVariantMap map{{QStringLiteral("label"), label},
                    {QStringLiteral("enabled"), action->isEnabled()},
                    {QStringLiteral("visible"), action->isVisible()}};
    if (action->isCheckable()) {
        map.insert(QStringLiteral("toggle-type"), action->actionGroup() ? QStringLiteral("radio") : QStringLiteral("checkmark"));
        map.insert(QStringLiteral("toggle-state"), action->isChecked() ? 1 : 0);
    }
    return map;
}

QVariantMap DBusMenu::properties(int id) const
{
    if (id == 0)
        return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    const QAction *found = action(id);
    return found ? properties(found) : QVariantMap();
}

DBusMenuLayoutItem DBusMenu::layout() const
{
    DBusMenuLayoutItem root{0, properties(0), {}};
    for (const QAction *entry : actions())
        root.children << DBusMenuLayoutItem{ids_.value(entry), properties(entry), {}};
    return root;
}

uint DBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                         DBusMenuLayoutItem &layoutItem)
{
    Q_UNUSED(propertyNames);
    // Ids are handed out as actions appear; one added behind the filter's back gets its own now.
    for (QAction *entry : actions())
        idOf(entry);
    DBusMenuLayoutItem whole = layout();
    if (parentId != 0)
        whole = DBusMenuLayoutItem{parentId, properties(parentId), {}};
    if (recursionDepth == 0)
        whole.children.clear();
    layoutItem = whole;
    return revision_;
}

DBusMenuItemPropertiesList DBusMenu::GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames)
{
    DBusMenuItemPropertiesList result;
    for (const int id : ids) {
        QVariantMap all = properties(id);
        if (!propertyNames.isEmpty())
            for (auto it = all.begin(); it != all.end();)
                it = propertyNames.contains(it.key()) ? std::next(it) : all.erase(it);
        result << DBusMenuItemProperties{id, all};
    }
    return result;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString &name)
{
    return QDBusVariant(properties(id).value(name));
}

bool DBusMenu::activate(int id, const QString &eventId)
{
    QAction *entry = action(id);
    if (!entry && id != 0)
        return false;
    if (eventId != QLatin1String("clicked") || !entry)
        return true;
    if (!entry->isSeparator() && entry->isEnabled() && entry->isVisible())
        // Out of the D-Bus call: the action may open windows or quit.
        QMetaObject::invokeMethod(entry, &QAction::trigger, Qt::QueuedConnection);
    return true;
}

void DBusMenu::Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp)
{
    Q_UNUSED(data);
    Q_UNUSED(timestamp);
    activate(id, eventId);
}

QList<int> DBusMenu::EventGroup(const DBusMenuEventList &events)
{
    QList<int> idErrors;
    for (const DBusMenuEvent &event : events) {
        if (!activate(event.id, event.eventId))
            idErrors << event.id;
    }
    return idErrors;
}

bool DBusMenu::AboutToShow(int id)
{
    Q_UNUSED(id);
    return false;
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    // The layout is always current (changes are announced as they happen): nothing to update.
    for (const int id : ids) {
        if (id != 0 && !action(id))
            idErrors << id;
    }
    return {};
}

} // namespace orvel
