#include <QWPlatform/linux/desktop/LinuxKeyboardState.h>

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWidget>

/// Caps Lock where no X server can be asked: from the native modifiers of the keys that the application gets.
class tst_CapsLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOffBeforeAnyKey();
    void keyLocksWhenItGoesDownAndUnlocksWhenItComesUp();
    void otherKeysTell();
    void repeatsAndMadeUpKeysTellNothing();

private:
    static constexpr quint32 lock = 2;
    static constexpr quint32 capsLockCode = 66;
    static constexpr quint32 letterCode = 38;

    void _key(QEvent::Type type, int key, quint32 code, quint32 nativeModifiers, bool isRepeat = false)
    {
        QKeyEvent event(type, key, Qt::NoModifier, code, 0, nativeModifiers, {}, isRepeat);
        QCoreApplication::sendEvent(&m_window, &event);
    }

    void _capsLock(quint32 before, quint32 after)
    {
        _key(QEvent::KeyPress, Qt::Key_CapsLock, capsLockCode, before);
        _key(QEvent::KeyRelease, Qt::Key_CapsLock, capsLockCode, after);
    }

    QWidget m_window;
};

void tst_CapsLock::isOffBeforeAnyKey()
{
    platform::LinuxKeyboardState keyboard;
    keyboard.startWatching();
    QVERIFY(!keyboard.isCapsLockOn());
}

void tst_CapsLock::keyLocksWhenItGoesDownAndUnlocksWhenItComesUp()
{
    platform::LinuxKeyboardState keyboard;
    keyboard.startWatching();
    _key(QEvent::KeyPress, Qt::Key_CapsLock, capsLockCode, 0);
    QVERIFY(keyboard.isCapsLockOn());
    _key(QEvent::KeyRelease, Qt::Key_CapsLock, capsLockCode, lock);
    QVERIFY(keyboard.isCapsLockOn());
    _key(QEvent::KeyPress, Qt::Key_CapsLock, capsLockCode, lock);
    QVERIFY(keyboard.isCapsLockOn());
    _key(QEvent::KeyRelease, Qt::Key_CapsLock, capsLockCode, lock);
    QVERIFY(!keyboard.isCapsLockOn());
}

void tst_CapsLock::otherKeysTell()
{
    platform::LinuxKeyboardState keyboard;
    keyboard.startWatching();
    _key(QEvent::KeyPress, Qt::Key_A, letterCode, lock); // locked while another application had the keys
    QVERIFY(keyboard.isCapsLockOn());
    _key(QEvent::KeyRelease, Qt::Key_A, letterCode, 0);
    QVERIFY(!keyboard.isCapsLockOn());
}

void tst_CapsLock::repeatsAndMadeUpKeysTellNothing()
{
    platform::LinuxKeyboardState keyboard;
    keyboard.startWatching();
    _capsLock(0, lock);
    _key(QEvent::KeyPress, Qt::Key_CapsLock, capsLockCode, lock);
    _key(QEvent::KeyPress, Qt::Key_CapsLock, capsLockCode, 0, true);
    _key(QEvent::KeyRelease, Qt::Key_CapsLock, capsLockCode, lock);
    QVERIFY(!keyboard.isCapsLockOn());
    _capsLock(0, lock);
    _key(QEvent::KeyPress, Qt::Key_A, 0, 0); // a program's own event
    QVERIFY(keyboard.isCapsLockOn());
}

QTEST_MAIN(tst_CapsLock)

#include "tst_CapsLock.moc"
