#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <map>

namespace orvel {

// The application's windows by identifier ("imsakiye", "settings"): each is made once, then
// reused and brought forward, never duplicated.
class Windows : public QObject {
    Q_OBJECT

public:
    using Factory = std::function<QWidget *()>;

    static constexpr auto imsakiye = "imsakiye";
    static constexpr auto settings = "settings";

    explicit Windows(QObject *parent = nullptr);
    ~Windows() override;

    // What `open` makes for an identifier that has no window yet.
    void setFactory(const QString &id, Factory factory);
    // Shows the window, making it first when needed, and brings it to the front.
    QWidget *open(const QString &id);
    // The open or hidden window of that identifier, if one was made and still exists.
    QWidget *window(const QString &id) const;

    // A stand-in for a window that is not there yet.
    static QWidget *placeholder(const QString &title);

private:
    std::map<QString, Factory> factories_;
    std::map<QString, QPointer<QWidget>> windows_;
};

} // namespace orvel
