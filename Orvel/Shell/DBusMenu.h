#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
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

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayoutItem &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayoutItem &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemProperties &item);

// A flat QMenu exported as com.canonical.dbusmenu, so that panels draw the status item's menu
// themselves. Item n is the menu's n-th action; 0 is the root.
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

signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QList<QAction *> actions() const;
    QVariantMap properties(int id) const;
    DBusMenuLayoutItem layout() const;

    QPointer<QMenu> menu_;
    const QObject *filtered_ = nullptr;
    uint revision_ = 1;
};

} // namespace orvel

Q_DECLARE_METATYPE(orvel::DBusMenuLayoutItem)
Q_DECLARE_METATYPE(orvel::DBusMenuItemProperties)
