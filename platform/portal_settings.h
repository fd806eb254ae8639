// The settings that the desktop portal hands to all programs.
#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>

namespace oxlade {

/// Tells of the values asked for as soon as the portal answers, and of every change
/// of any value from then on. A value nobody knows, a portal that is silent or
/// not there: nothing is told, nothing waits. Main thread.
class PortalSettings final : public QObject {
    Q_OBJECT

  public:
    using Listener =
        std::function<void(const QString& group, const QString& key, const QVariant& value)>;

    explicit PortalSettings(Listener listener);

    void ask(const QString& group, const QString& key);

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    Listener listener_;
};

} // namespace oxlade
