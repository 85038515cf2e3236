#pragma once

#include "AppId.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>

namespace orvel {

// One picture of a status notifier item: ARGB32 pixels in network byte order.
struct SniPixmap {
    int width = 0;
    int height = 0;
    QByteArray argb;

    static SniPixmap from(const QImage &image);
    bool operator==(const SniPixmap &) const = default;
};
using SniPixmaps = QList<SniPixmap>;

struct SniToolTip {
    QString iconName;
    SniPixmaps pixmaps;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &argument, const SniPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, SniPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const SniToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, SniToolTip &toolTip);

// The object a panel reads over D-Bus (org.kde.StatusNotifierItem, with the Ayatana label that
// shows the title beside the icon). It only holds what it is given and tells the panel of changes.
class StatusNotifierItem : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(orvel::SniPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ emptyText)
    Q_PROPERTY(orvel::SniPixmaps OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ emptyText)
    Q_PROPERTY(orvel::SniPixmaps AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ emptyText)
    Q_PROPERTY(orvel::SniToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)

public:
    static constexpr auto objectPath = "/StatusNotifierItem";
    static constexpr auto menuPath = "/MenuBar";

    explicit StatusNotifierItem(QObject *parent = nullptr);

    static void registerTypes();

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return QString::fromLatin1(AppId::id); }
    QString title() const { return QStringLiteral("Orvel"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString emptyText() const { return {}; }
    SniPixmaps noPixmaps() const { return {}; }
    SniPixmaps iconPixmap() const { return pixmaps_; }
    QString iconThemePath() const { return iconThemePath_; }
    QString iconName() const { return iconName_; }
    SniToolTip toolTip() const;
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(QString::fromLatin1(menuPath)); }
    QString label() const { return label_; }
    QString labelGuide() const { return labelGuide_; }

    // Each setter tells the panel only when the value changed.
    // The pixmaps and a named icon, looked up in the theme path first; panels that find the name
    // show it instead of the pixmaps, an empty name leaves them to the pixmaps.
    void setIcon(const SniPixmaps &pixmaps, const QString &name = QString());
    void setIconThemePath(const QString &path);
    void setToolTipText(const QString &text);
    void setLabel(const QString &label, const QString &guide);

public slots:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);
    // Ayatana's middle click (MATE, the indicator applets), which has no position.
    Q_SCRIPTABLE void XAyatanaSecondaryActivate(uint timestamp);
    // Plasma on Wayland hands the token that lets the window it opens take the focus.
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString &token);

signals:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewAttentionIcon();
    Q_SCRIPTABLE void NewOverlayIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString &status);
    Q_SCRIPTABLE void XAyatanaNewLabel(const QString &label, const QString &guide);

    // For the application, not exported.
    void activateRequested(QPoint position);
    void contextMenuRequested(QPoint position);
    void activationTokenProvided(const QString &token);

private:
    SniPixmaps pixmaps_;
    QString iconThemePath_;
    QString iconName_;
    QString toolTipText_;
    QString label_;
    QString labelGuide_;
};

} // namespace orvel

Q_DECLARE_METATYPE(orvel::SniPixmap)
Q_DECLARE_METATYPE(orvel::SniToolTip)
