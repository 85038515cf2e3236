#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariantMap>

class QAction;
class QMenu;

namespace orvel {

// One entry of the exported menu layout: (ia{sv}av), children wrapped in variants.
struct DBusMenuLayoutItem {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayoutItem> children;
};

struct DBusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};
using DBusMenuItemPropertiesList = QList<DBusMenuItemProperties>;

struct DBusMenuItemKeys {
    int id = 0;
    QStringList names;
};
using DBusMenuItemKeysList = QList<DBusMenuItemKeys>;

// One event of EventGroup: (id, event, data, timestamp).
struct DBusMenuEvent {
    int id = 0;
    QString eventId;
    QDBusVariant data;
    uint timestamp = 0;
};
using DBusMenuEventList = QList<DBusMenuEvent>;

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayoutItem &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayoutItem &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemKeys &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemKeys &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event);

// A flat QMenu exported as com.canonical.dbusmenu, so that panels draw the status item's menu
// themselves, with the calls libdbusmenu's hosts make (EventGroup, AboutToShowGroup) as well as
// the single ones. Each action keeps its id for as long as it lives, so a click on a layout the
// host fetched before an entry appeared still reaches the entry it showed; 0 is the root.
class DBusMenu : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    explicit DBusMenu(QObject *parent = nullptr);

    static void registerTypes();

    void setMenu(QMenu *menu);

    uint version() const { return 3; }
    QString textDirection() const { return QStringLiteral("ltr"); }
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

public slots:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                orvel::DBusMenuLayoutItem &layout);
    Q_SCRIPTABLE orvel::DBusMenuItemPropertiesList GetGroupProperties(const QList<int> &ids,
                                                                      const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> EventGroup(const orvel::DBusMenuEventList &events);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    Q_SCRIPTABLE void ItemsPropertiesUpdated(const orvel::DBusMenuItemPropertiesList &updated,
                                             const orvel::DBusMenuItemKeysList &removed);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QList<QAction *> actions() const;
    QAction *action(int id) const;
    int idOf(QAction *action);
    QVariantMap properties(int id) const;
    static QVariantMap properties(const QAction *action);
    DBusMenuLayoutItem layout() const;
    bool activate(int id, const QString &eventId);
    void layoutChanged();
    void actionChanged(QAction *action);

    QPointer<QMenu> menu_;
    const QObject *filtered_ = nullptr;
    uint revision_ = 1;
    QHash<const QAction *, int> ids_;
    QHash<int, QVariantMap> sent_; // what the host was last told of each item
    int nextId_ = 1;
};

} // namespace orvel

Q_DECLARE_METATYPE(orvel::DBusMenuLayoutItem)
Q_DECLARE_METATYPE(orvel::DBusMenuItemProperties)
Q_DECLARE_METATYPE(orvel::DBusMenuItemKeys)
Q_DECLARE_METATYPE(orvel::DBusMenuEvent)
