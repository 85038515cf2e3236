#include "DBusMenu.h"

#include <QAction>
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
}

void DBusMenu::setMenu(QMenu *menu)
{
    if (menu_)
        menu_->removeEventFilter(this);
    menu_ = menu;
    filtered_ = menu;
    // An entry shown, hidden, added or renamed is a new layout for the panel to fetch.
    if (menu_)
        menu_->installEventFilter(this);
    ++revision_;
    emit LayoutUpdated(revision_, 0);
}

bool DBusMenu::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    // Compared by address: a menu being destroyed still removes its actions, and is no QMenu by
    // then.
    if (watched == filtered_ && (type == QEvent::ActionChanged || type == QEvent::ActionAdded || type == QEvent::ActionRemoved)) {
        ++revision_;
        emit LayoutUpdated(revision_, 0);
    }
    return QObject::eventFilter(watched, event);
}

QList<QAction *> DBusMenu::actions() const
{
    return menu_ ? menu_->actions() : QList<QAction *>();
}

QVariantMap DBusMenu::properties(int id) const
{
    if (id == 0)
        return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    const QList<QAction *> all = actions();
    if (id < 1 || id > all.size())
        return {};
    const QAction *action = all.at(id - 1);
    if (action->isSeparator())
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    // dbusmenu marks mnemonics with '_'; a literal one is doubled.
    QString label = action->text();
    label.replace(u'_', QLatin1String("__"));
    label.remove(u'&');
    return {{QStringLiteral("label"), label},
            {QStringLiteral("enabled"), action->isEnabled()},
            {QStringLiteral("visible"), action->isVisible()}};
}

DBusMenuLayoutItem DBusMenu::layout() const
{
    DBusMenuLayoutItem root{0, properties(0), {}};
    const int count = static_cast<int>(actions().size());
    for (int id = 1; id <= count; ++id)
        root.children << DBusMenuLayoutItem{id, properties(id), {}};
    return root;
}

uint DBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                         DBusMenuLayoutItem &layoutItem)
{
    Q_UNUSED(propertyNames);
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

void DBusMenu::Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp)
{
    Q_UNUSED(data);
    Q_UNUSED(timestamp);
    if (eventId != QLatin1String("clicked"))
        return;
    const QList<QAction *> all = actions();
    if (id < 1 || id > all.size())
        return;
    QAction *action = all.at(id - 1);
    if (!action->isSeparator() && action->isEnabled())
        // Out of the D-Bus call: the action may open windows or quit.
        QMetaObject::invokeMethod(action, &QAction::trigger, Qt::QueuedConnection);
}

bool DBusMenu::AboutToShow(int id)
{
    Q_UNUSED(id);
    return false;
}

} // namespace orvel
