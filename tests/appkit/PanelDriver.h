#pragma once

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>

/// Waits for a modal widget to be on the screen and to have the keyboard, then hands it over; for panels that run a
/// loop of their own.
class PanelDriver : public QObject
{
    Q_OBJECT

public:
    explicit PanelDriver(std::function<void(QWidget &panel)> drive)
        : m_drive(std::move(drive))
    {
        connect(&m_timer, &QTimer::timeout, this, &PanelDriver::_look);
        m_timer.start(5);
    }

    bool hasDriven() const { return m_hasDriven; }

private:
    void _look()
    {
        QWidget *const panel = QApplication::activeModalWidget();
        if (!panel || !panel->isVisible() || !panel->isActiveWindow())
            return;
        m_timer.stop();
        m_hasDriven = true;
        const QPointer<QDialog> left(qobject_cast<QDialog *>(panel));
        m_drive(*panel);
        if (left && QTest::currentTestFailed())
            left->done(0); // a check that fails leaves before it has answered, and the panel would wait for ever
    }

    QTimer m_timer;
    std::function<void(QWidget &)> m_drive;
    bool m_hasDriven = false;
};
