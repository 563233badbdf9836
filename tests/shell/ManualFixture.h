#pragma once

#include "fakes/FakeSystem.h"

#include <QWUtilities/shell/QWManual.h>

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/toolbar/Toolbar.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/PropertyList.h>

#include <QTest>

/// A fake machine on which the manual is opened, with a support site that offers nothing and an unzip that puts an
/// index page into its target.
struct ManualFixture
{
    static constexpr auto folder = "~/Library/Application Support/Quorwell/Test Host/Manual";
    static constexpr auto question = "http://support.test/support/manual_version.php?appCode=TH&version=2";

    FakeSystem system;
    platform::SystemScope scope{system};

    ManualFixture()
    {
        system.processes.handler = [this](const auto &request) { return unzip(request); };
    }

    platform::ChildProcessResult unzip(const platform::ChildProcessRequest &request) const
    {
        const QString target = request.arguments.last();
        entriesBeforeUnpacking = QDir(target).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
        if (archiveIsGood)
            system.writeFile(target + "/index.html", pageWithVersion("2.1"));
        return {.started = true, .exited = true, .status = archiveIsGood ? 0 : 9, .output = {}};
    }

    static QByteArray pageWithVersion(const QByteArray &version)
    {
        return "<html><head><meta name=\"qw_manual_version\" content=\"" + version + "\"></head></html>";
    }

    void install(const QByteArray &page) const { system.writeFile(indexPath(), page); }
    void siteOffers(const QVariant &version) const
    {
        system.urlLoader.answer(question, platform::PropertyList::toXml(QVariantMap{{"version", version}}));
    }

    /// Nobody, not even root, removes what the kernel shows of a process.
    void leadFolderToOneThatCannotBeEmptied() const
    {
        QDir().mkpath(QFileInfo(system.real(folder)).path());
        QDir(system.real(folder)).removeRecursively();
        QVERIFY(QFile::link("/proc/self/fdinfo", system.real(folder)));
    }

    /// Opens the manual and waits until the version check is over.
    void open() const
    {
        QWManual::openManual();
        QTRY_COMPARE(system.backgroundWork().running(), 0);
    }

    /// Opens an old manual and takes the update that is offered.
    void startUpdate() const
    {
        install(pageWithVersion("2.1"));
        siteOffers("2.2");
        open();
        QCOMPARE(system.urlDownloads.started.size(), 1U);
    }

    QString indexPath() const { return system.real(folder) + "/index.html"; }
    QUrl indexUrl() const { return QUrl::fromLocalFile(indexPath()); }
    FakeWebView &view() const { return *system.webViews.views.back(); }
    template <class T>
    T *child(const char *name) const
    {
        return QWManual::manual().window()->findChild<T *>(name);
    }
    platform::Toolbar &toolbar() const { return *QWManual::manual().window()->findChild<platform::Toolbar *>(); }

    mutable QStringList entriesBeforeUnpacking;
    bool archiveIsGood = true;
};
