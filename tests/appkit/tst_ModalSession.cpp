#include <QWPlatform/appkit/windows/ModalSession.h>

#include <QPushButton>
#include <QTest>

using platform::ModalSession;

class tst_ModalSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sessionContinuesUntilStopped();
    void eventsAreHandledWhileItRuns();
    void panelIsModalWhileItRuns();
    void closedPanelAborts();
    void panelThatWentAborts();
    void innermostSessionIsStopped();
    void stoppingWithoutASessionDoesNothing();
    void modalityComesBack();
};

void tst_ModalSession::sessionContinuesUntilStopped()
{
    QWidget panel;
    ModalSession session(panel);
    QCOMPARE(session.run(), ModalSession::Continues);
    QCOMPARE(session.run(), ModalSession::Continues);
    ModalSession::stopModal(7);
    QCOMPARE(session.run(), 7);
    QCOMPARE(session.run(), 7);
}

void tst_ModalSession::eventsAreHandledWhileItRuns()
{
    QWidget panel;
    ModalSession session(panel);
    QMetaObject::invokeMethod(
        &panel, [] { ModalSession::stopModal(); }, Qt::QueuedConnection);
    QCOMPARE(session.run(), ModalSession::Stopped);
}

void tst_ModalSession::panelIsModalWhileItRuns()
{
    QWidget window, panel;
    window.show();
    {
        ModalSession session(panel);
        QVERIFY(panel.isVisible());
        QCOMPARE(QApplication::activeModalWidget(), &panel);
    }
    QVERIFY(!panel.isVisible());
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
}

void tst_ModalSession::closedPanelAborts()
{
    QWidget panel;
    ModalSession session(panel);
    panel.close();
    QCOMPARE(session.run(), ModalSession::Aborted);
}

void tst_ModalSession::panelThatWentAborts()
{
    auto panel = std::make_unique<QWidget>();
    ModalSession session(*panel);
    panel.reset();
    QCOMPARE(session.run(), ModalSession::Aborted);
}

void tst_ModalSession::innermostSessionIsStopped()
{
    QWidget outerPanel, innerPanel;
    ModalSession outer(outerPanel);
    {
        ModalSession inner(innerPanel);
        ModalSession::stopModal(3);
        QCOMPARE(inner.run(), 3);
    }
    QCOMPARE(outer.run(), ModalSession::Continues);
}

void tst_ModalSession::stoppingWithoutASessionDoesNothing()
{
    ModalSession::stopModal(3);
    QWidget panel;
    ModalSession session(panel);
    QCOMPARE(session.run(), ModalSession::Continues);
}

void tst_ModalSession::modalityComesBack()
{
    QWidget panel;
    panel.setWindowModality(Qt::WindowModal);
    {
        ModalSession session(panel);
        QCOMPARE(panel.windowModality(), Qt::ApplicationModal);
    }
    QCOMPARE(panel.windowModality(), Qt::WindowModal);
}

QTEST_MAIN(tst_ModalSession)
#include "tst_ModalSession.moc"
