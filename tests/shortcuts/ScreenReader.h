#pragma once

#include "XServer.h"
#include "appkit/PrivateBus.h"

#include <QObject>
#include <QStringList>

/// Hears what Qt tells of the focus and of names. Qt tells nothing before it knows a bus on which screen readers
/// listen; that is the test's own. Made before the application object, which then runs on an X server of its own.
class ScreenReader : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Bus")

public:
    ScreenReader();
    ~ScreenReader() override;

    /// False when Qt has nothing to tell. Called once there is an application object.
    bool listen();

    static void forget();

    static QString focused(); ///< Name of what got the focus last.
    static bool heard(const QString &name);
    static QString renamed(); ///< The name that was given last.

public Q_SLOTS:
    QString GetAddress(); ///< Asked for by Qt.

private:
    XServer m_server;
    PrivateBus m_bus;
};
