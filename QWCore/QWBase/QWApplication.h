#pragma once

#include "application/ApplicationCategory.h"

#include <QWBase/qwbase_export.h>

#include <QApplication>
#include <QStringList>

#include <atomic>
#include <memory>
#include <span>
#include <vector>

class QKeyEvent;

namespace qw
{
class InstanceFolder;
}

/// The application object of a host. It stays when the last window closes, survives exceptions that leave a slot, and
/// does next to nothing before its event loop runs. Main thread, except handlesExceptions().
class QWBASE_EXPORT QWApplication : public QApplication
{
    Q_OBJECT

public:
    /// As QApplication: both must outlive the object.
    QWApplication(int &argc, char **argv);

    /// Releases the shared objects of the current System while windows can still be closed.
    ~QWApplication() override;

    /// The one application object, or null when there is none or it is a plain QApplication.
    static QWApplication *sharedApplication();

    /// Adds a category, wrapped inside those registered before. Called while libraries load; fatal once the application
    /// object exists. The texts it points to must stay.
    static void registerCategory(const QWApplicationCategory &category);

    /// Launches, then runs the event loop until quit(). The launch runs inside the loop. A single-instance host whose
    /// other instance runs hands its URLs over and returns 0 without launching.
    static int exec();

    /// Display name: "CFBundleDisplayName", else "CFBundleName", else the executable's name.
    virtual QString name() const;

    /// Short product code, as the support site knows it: "QWApplicationCode" of the Info.plist, or "".
    virtual QString code() const;

    /// The leading integer of "CFBundleShortVersionString"; 0 when there is none.
    virtual int majorVersion() const;

    /// True when that version carries an alpha, beta, public beta or release candidate mark ("2.1b3", "3.0rc1").
    virtual bool isBetaVersion() const;

    /// The application's own folder below "~/Library/Application Support/Quorwell/", tilde expanded. Not made here.
    virtual QString supportDirectory() const;

    /// A folder of this process that nobody else can read, made when first asked for (or when it has gone meanwhile)
    /// and removed at the end; what an instance left that could not do so, the next one removes. "" when none can be
    /// made: an alert has then said so, once, and nothing must be written. Main thread.
    virtual QString tempDirectory() const;

    /// Whether a splash screen shows during the launch; a host says yes by overriding.
    virtual bool usesSplashScreen() const;

    /// Whether a second start hands its URLs to the running instance and ends: "QWSingleInstance" of the Info.plist.
    virtual bool usesSingleInstance() const;

    /// Whether exceptions are offered to the user for reporting; off during plug-in scans. On at first. Any thread.
    bool handlesExceptions() const { return m_handlesExceptions; }
    void setHandleExceptions(bool handle) { m_handlesExceptions = handle; }

    /// The launch: takes URLs from now on, then calls applicationDidFinishLaunching() inside the categories' hooks.
    virtual void finishLaunching();

    /// A URL for the host, one of its schemes: from the command line or from another instance. Delivered from the event
    /// loop, one call each in order of arrival, when the launch is over.
    Q_INVOKABLE virtual void getUrlWithReplyEvent(const QString &url);

    /// Passes the event through the categories, then on. An exception that leaves its handling is logged and ends here.
    bool notify(QObject *receiver, QEvent *event) override;

protected:
    /// The host's own start-up work: its plug-in scans, menus and windows. Here it is left to the application's
    /// delegate (Q_INVOKABLE void applicationDidFinishLaunching()), if one is set.
    virtual void applicationDidFinishLaunching();

private:
    using SendEvent = bool (*)(QWApplication &, QObject *, QEvent *);

    void _launch();
    bool _isSecondInstance();
    void _finishLaunchingInside(std::span<const QWApplicationCategory> categories);
    void _didFinishLaunching(const QWApplicationCategory &category) noexcept;
    void _receiveUrls(const QStringList &texts);
    void _deliverUrls();
    QString _folderName() const;
    QString _tempDirectoryBase() const;
    bool _notify(QObject *receiver, QEvent *event);
    bool _notifyKeyPress(QObject *receiver, QKeyEvent *event);
    bool _performKeyEquivalent(QKeyEvent &event);
    void _exceptionLeftEvent() noexcept;
    void _reportException(const QString &reason) noexcept;

    std::vector<SendEvent> m_sendEvent; ///< Hooks of the categories that have one; fixed from the constructor on.
    std::atomic<bool> m_handlesExceptions = true;
    bool m_handlesGetUrl = false; ///< Set when the launch begins.
    bool m_launched = false;      ///< Set when the launch has ended, in whatever way.
    int m_keyPressLevel = -1;     ///< Level of the event loop that delivers a key press; -1: none does.
    QStringList m_urls;           ///< Arrived before the launch was over.
    mutable std::unique_ptr<qw::InstanceFolder> m_tempDirectory;
    mutable bool m_toldOfTempDirectory = false; ///< That there is none.
};
