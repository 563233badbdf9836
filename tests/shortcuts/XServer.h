#pragma once

#include <QStringList>

#include <sys/types.h>

/// An X server without a screen, made the display of this program before its application object is.
class XServer
{
public:
    XServer();
    ~XServer();
    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;

    bool isRunning() const { return !m_display.isEmpty(); }

    /// What the user does, in xdotool's words; false when it fails.
    static bool act(const QStringList &arguments);

    /// Another keyboard layout ("us", "ru", "de").
    static bool setLayout(const QString &layout);

private:
    pid_t m_process = -1;
    QByteArray m_display;
};
