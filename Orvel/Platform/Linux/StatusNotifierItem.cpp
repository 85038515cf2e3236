#include "StatusNotifierItem.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace orvel {

SniPixmap SniPixmap::from(const QImage &image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    SniPixmap pixmap{argb.width(), argb.height(), {}};
    pixmap.argb.resize(static_cast<qsizetype>(argb.width()) * argb.height() * 4);
    auto *out = reinterpret_cast<quint32 *>(pixmap.argb.data());
    for (int y = 0; y < argb.height(); ++y) {
        const auto *line = reinterpret_cast<const quint32 *>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x)
            *out++ = qToBigEndian(line[x]);
    }
    return pixmap;
}

QDBusArgument &operator<<(QDBusArgument &argument, const SniPixmap &pixmap)
{
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.argb;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, SniPixmap &pixmap)
{
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.argb;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const SniToolTip &toolTip)
{
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, SniToolTip &toolTip)
{
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

StatusNotifierItem::StatusNotifierItem(QObject *parent)
    : QObject(parent)
{
    registerTypes();
}

void StatusNotifierItem::registerTypes()
{
    qDBusRegisterMetaType<SniPixmap>();
    qDBusRegisterMetaType<SniPixmaps>();
    qDBusRegisterMetaType<SniToolTip>();
}

SniToolTip StatusNotifierItem::toolTip() const
{
    return {QString(), {}, QStringLiteral("Orvel"), toolTipText_};
}

void StatusNotifierItem::setIcon(const SniPixmaps &pixmaps, const QString &name)
{
    if (pixmaps == pixmaps_ && name == iconName_)
        return;
    pixmaps_ = pixmaps;
    iconName_ = name;
    emit NewIcon();
}

void StatusNotifierItem::setIconThemePath(const QString &path)
{
    if (path == iconThemePath_)
        return;
    iconThemePath_ = path;
    emit NewIcon();
}

void StatusNotifierItem::setToolTipText(const QString &text)
{
    if (text == toolTipText_)
        return;
    toolTipText_ = text;
    emit NewToolTip();
}

void StatusNotifierItem::setLabel(const QString &label, const QString &guide)
{
    if (label == label_ && guide == labelGuide_)
        return;
    label_ = label;
    labelGuide_ = guide;
    emit XAyatanaNewLabel(label_, labelGuide_);
}

void StatusNotifierItem::Activate(int x, int y)
{
    emit activateRequested(QPoint(x, y));
}

void StatusNotifierItem::SecondaryActivate(int x, int y)
{
    emit activateRequested(QPoint(x, y));
}

void StatusNotifierItem::ContextMenu(int x, int y)
{
    emit contextMenuRequested(QPoint(x, y));
}

void StatusNotifierItem::XAyatanaSecondaryActivate(uint timestamp)
{
    Q_UNUSED(timestamp);
    emit activateRequested(QPoint());
}

void StatusNotifierItem::ProvideXdgActivationToken(const QString &token)
{
    emit activationTokenProvided(token);
}

void StatusNotifierItem::Scroll(int delta, const QString &orientation)
{
    Q_UNUSED(delta);
    Q_UNUSED(orientation);
}

} // namespace orvel
