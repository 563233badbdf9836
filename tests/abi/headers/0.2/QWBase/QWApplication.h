#pragma once

#include <QWBase/qwbase_export.h>

#include <QApplication>
#include <QString>

#include <memory>

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

    /// Launches, then runs the event loop until quit(). The launch runs inside the loop. A single-instance host whose
    /// other instance runs hands its URLs over and returns 0 without launching.
    static int exec();

    /// Display name: "CFBundleDisplayName", else "CFBundleName", else the executable's name.
    Q_INVOKABLE virtual QString name() const;

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
    bool handlesExceptions() const;

    /// Sets handlesExceptions(). Any thread.
    void setHandleExceptions(bool handle);

    /// The launch: takes URLs from now on, then calls applicationDidFinishLaunching() inside the categories' hooks.
    virtual void finishLaunching();

    /// A URL for the host, one of its schemes: from the command line or from another instance. Delivered from the event
    /// loop, one call each in order of arrival, when the launch is over.
    Q_INVOKABLE virtual void getUrlWithReplyEvent(const QString &url);

    /// A file for the host, by its absolute path: from the command line or another instance, in order with the URLs, or
    /// from platform::Workspace::openFileWithApplication(). True when it was opened, or the user was told why not. Here
    /// it is left to the application's delegate (Q_INVOKABLE bool applicationOpenFile(const QString &path)), if one is
    /// set.
    Q_INVOKABLE virtual bool openFile(const QString &path);

    /// Passes the event through the categories, then on. An exception that leaves its handling is logged and ends here.
    bool notify(QObject *receiver, QEvent *event) override;

protected:
    /// The host's own start-up work: its plug-in scans, menus and windows. Here it is left to the application's
    /// delegate (Q_INVOKABLE void applicationDidFinishLaunching()), if one is set.
    virtual void applicationDidFinishLaunching();

private:
    class Private;
    std::unique_ptr<Private> d;
};
