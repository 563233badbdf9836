#pragma once

#include <QEvent>
#include <QWindow>

/// What a platform plug-in hands a key over by: into the queue from which the event loop takes it. Declared here, since
/// Qt's header for it is for platform plug-ins only.
class QWindowSystemInterface
{
public:
    static bool handleExtendedKeyEvent(QWindow *window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers,
                                       quint32 nativeScanCode, quint32 nativeVirtualKey, quint32 nativeModifiers,
                                       const QString &text, bool autorepeat, unsigned short count, bool canOverride);
};

/// A window system whose user types; nothing of it is delivered before the event loop runs.
namespace WindowSystem
{

inline void sendKey(QWindow *window, QEvent::Type type, int key, const QString &text = {},
                    Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QWindowSystemInterface::handleExtendedKeyEvent(window, type, key, modifiers, 0, 0, 0, text, false, 1, true);
}

inline void type(QWindow *window, char16_t letter)
{
    const int key = QChar(letter).toUpper().unicode();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        sendKey(window, type, key, QString(letter));
}

} // namespace WindowSystem
