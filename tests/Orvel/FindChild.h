#pragma once

#include <QLayout>
#include <QObject>
#include <QString>
#include <QWidget>

#include <stdexcept>
#include <string>
#include <vector>

namespace orvel::test {

// The one object of type T under `root` with this object name. A name that is missing or given
// twice throws, which fails the test where the lookup is, not at a null pointer further on.
template <class T = QWidget>
T *child(const QObject &root, const QString &name)
{
    const QList<T *> found = root.findChildren<T *>(name);
    if (found.size() != 1)
        throw std::logic_error(std::to_string(found.size()) + " children named \"" + name.toStdString() + "\" under "
                               + root.metaObject()->className());
    return found.front();
}

template <class T = QWidget>
T *child(const QObject &root, const char *name)
{
    return child<T>(root, QString::fromUtf8(name));
}

// The widgets of type T in `container`'s layout, in the order it shows them.
template <class T = QWidget>
std::vector<T *> laidOut(const QWidget &container)
{
    std::vector<T *> widgets;
    const QLayout *layout = container.layout();
    for (int index = 0; layout && index < layout->count(); ++index) {
        if (T *widget = qobject_cast<T *>(layout->itemAt(index)->widget()))
            widgets.push_back(widget);
    }
    return widgets;
}

} // namespace orvel::test
