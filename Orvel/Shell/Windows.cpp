#include "Windows.h"

#include <QLabel>
#include <QVBoxLayout>

namespace orvel {

Windows::Windows(QObject *parent)
    : QObject(parent)
{
}

Windows::~Windows()
{
    for (auto &[id, window] : windows_)
        delete window.data();
}

void Windows::setFactory(const QString &id, Factory factory)
{
    factories_[id] = std::move(factory);
}

QWidget *Windows::window(const QString &id) const
{
    const auto found = windows_.find(id);
    return found == windows_.end() ? nullptr : found->second.data();
}

QWidget *Windows::open(const QString &id)
{
    QWidget *widget = window(id);
    if (!widget) {
        const auto factory = factories_.find(id);
        if (factory == factories_.end() || !factory->second)
            return nullptr;
        widget = factory->second();
        if (!widget)
            return nullptr;
        windows_[id] = widget;
    }
    widget->setWindowState(widget->windowState() & ~Qt::WindowMinimized);
    widget->show();
    widget->raise();
    widget->activateWindow();
    return widget;
}

QWidget *Windows::placeholder(const QString &title)
{
    auto *window = new QWidget(nullptr, Qt::Window);
    window->setWindowTitle(title);
    auto *layout = new QVBoxLayout(window);
    layout->setContentsMargins(40, 32, 40, 32);
    auto *label = new QLabel(QStringLiteral("Yakında"), window);
    label->setAlignment(Qt::AlignCenter);
    QFont font = label->font();
    font.setPointSizeF(15);
    label->setFont(font);
    layout->addWidget(label);
    window->resize(360, 200);
    return window;
}

} // namespace orvel
