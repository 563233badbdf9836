#pragma once

#include <QWBase/QWApplication.h>

#include <simulators/SupportSite.h>

#include <QObject>

#include <memory>

/// Tests of the manual on the real machine: the real unzip, a real server on the loopback interface, the real browser
/// view. Their program lies in an application bundle of its own, whose archive each test writes before it opens the
/// manual.
class RealManualTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
    void cleanup();

protected:
    void hostCarries(const QByteArray &archive) const;
    static void openAndWaitForCheck();
    static QString supportFolder() { return QWApplication::sharedApplication()->supportDirectory(); }
    static QString index() { return supportFolder() + "/Manual/index.html"; }

    std::unique_ptr<SupportSite> m_site;
    QStringList m_alerts;

private:
    QString m_archive; ///< The host's own.
};
