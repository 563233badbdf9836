#include "RealManualTest.h"

#include "ManualArchives.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/windows/AlertResponder.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/network/UrlLoader.h>
#include <QWPlatform/network/transfers/UrlDownload.h>
#include <QWUtilities/shell/QWManual.h>

#include <QDir>
#include <QFile>
#include <QTest>

using platform::System;

void RealManualTest::init()
{
    m_alerts.clear();
    platform::setAlertResponder([this](const platform::Alert &alert, QWidget *) {
        m_alerts.append(alert.messageText);
        return std::optional(0);
    });
    m_site = std::make_unique<SupportSite>();
    QVERIFY(m_site->listen());
    System::current().locations().setSupportSite(m_site->address());
    m_archive = System::current().mainBundle().path() + "/Contents/Resources/Manual.zip";
    QDir(supportFolder()).removeRecursively();
    QFile::remove(m_archive);
    QFile::remove(QWApplication::sharedApplication()->tempDirectory() + "/Manual.zip");
}

void RealManualTest::cleanup()
{
    QTRY_COMPARE(System::current().backgroundWork().running(), 0);
    System::current().releaseShared();
    m_site.reset();
}

void RealManualTest::hostCarries(const QByteArray &archive) const
{
    manuals::writeTo(m_archive, archive);
}

void RealManualTest::openAndWaitForCheck()
{
    QWManual::openManual();
    QTRY_COMPARE(System::current().backgroundWork().running(), 0);
}
