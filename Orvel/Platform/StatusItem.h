#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>

#include <memory>

class QMenu;

namespace orvel {

struct StatusItemContent;

// The application's place in the desktop panel: a picture and a spoken label that follow the
// model, a click that opens the panel, and a context menu. Each desktop gets its own kind.
class StatusItem : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // False where the desktop has no place for status items.
    virtual bool isAvailable() const = 0;
    virtual void show() = 0;
    // Shows the content; leaves the item alone when neither picture nor label changed.
    virtual void update(const StatusItemContent &content) = 0;
    // The menu stays owned by the caller.
    virtual void setMenu(QMenu *menu) = 0;
    // Where the item is on screen; an empty rectangle when the host does not say.
    virtual QRect geometry() const = 0;
    // Whether the panel shows the title beside the icon; where it does not, the icon carries the
    // time left unless the user chose otherwise.
    virtual bool panelShowsLabel() const { return false; }

signals:
    // A plain click, at `position` when the host says where, else at a null point.
    void activated(QPoint position);
    // A panel came or went after start: at login Orvel may start before the desktop's panel.
    void availabilityChanged(bool available);
};

} // namespace orvel
