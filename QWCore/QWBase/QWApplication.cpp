#include "QWApplication.h"

#include "QWBase/application/ApplicationCategories.h"
#include "QWBase/application/EventDelivery.h"
#include "QWBase/application/HostUrls.h"
#include "QWBase/files/InstanceFolder.h"
#include "QWError.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/Selector.h>
#include <QWPlatform/appkit/Theme.h>
#include <QWPlatform/appkit/windows/InstanceLink.h>
#include <QWPlatform/devices/input/KeyboardState.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/machine/SystemServices.h>
#include <QWPlatform/network/transfers/Proxies.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>

#include <atomic>
#include <span>
#include <unistd.h>
#include <utility>

using platform::localized;
using platform::System;
using platform::SystemServices;

namespace
{
QWApplication *theApplication = nullptr;

/// What must be set before QApplication's constructor runs.
int &prepared(int &argc)
{
    platform::useDesktopProxies(); // while there is one thread
    platform::giveUpSilentBus();
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts); // web views share their contexts with the windows
    return argc;
}

QString hostText(const QString &key)
{
    return System::current().mainBundle().objectForInfoDictionaryKey(key).toString();
}

QString version()
{
    return hostText("CFBundleShortVersionString");
}
} // namespace

class Q_DECL_HIDDEN QWApplication::Private
{
public:
    explicit Private(QWApplication &owner)
        : m_events(owner)
        , m_owner(owner)
    {
    }

    void _launch();
    void _finishLaunchingInside(std::span<const qw::ApplicationCategory> categories);
    QString _folderName() const;
    QString _tempDirectory();

    qw::EventDelivery m_events;
    std::atomic<bool> m_handlesExceptions = true;
    bool m_handlesGetUrl = false; ///< Set when the launch begins.

private:
    bool _isSecondInstance();
    void _didFinishLaunching(const qw::ApplicationCategory &category) noexcept;
    QStringList _urlsOfCommandLine() const;
    void _receiveUrls(const QStringList &texts);
    void _deliverUrls();
    void _deliver(const QString &url);
    QString _tempDirectoryBase() const;

    QWApplication &m_owner;
    const QString m_startFolder = QDir::currentPath(); ///< What relative paths of the command line mean.
    bool m_launched = false;                           ///< Set when the launch has ended, in whatever way.
    QStringList m_urls;                                ///< Arrived before the launch was over.
    std::unique_ptr<qw::InstanceFolder> m_tempDirectory;
    bool m_toldOfTempDirectory = false; ///< That there is none.
};

QWApplication::QWApplication(int &argc, char **argv)
    : QApplication(prepared(argc), argv)
    , d(std::make_unique<Private>(*this))
{
    theApplication = this;
    setApplicationName(QWApplication::name()); // what screen readers say, and the title of alerts
    setQuitOnLastWindowClosed(false);
    platform::applyTheme(*this, platform::ThemeChoice::System);
    d->m_events.addCategories();
}

QWApplication::~QWApplication()
{
    System::current().releaseShared();
    System::current().endWork();
    theApplication = nullptr;
}

QWApplication *QWApplication::sharedApplication()
{
    return theApplication;
}

int QWApplication::exec()
{
    if (theApplication)
        QMetaObject::invokeMethod(
            theApplication, [] { theApplication->d->_launch(); }, Qt::QueuedConnection);
    return QApplication::exec();
}

QString QWApplication::name() const
{
    for (const char *const key : {"CFBundleDisplayName", "CFBundleName"})
        if (const QString text = hostText(key); !text.isEmpty())
            return text;
    return QFileInfo(applicationFilePath()).fileName();
}

QString QWApplication::code() const
{
    return hostText("QWApplicationCode");
}

int QWApplication::majorVersion() const
{
    static const QRegularExpression leadingInteger("^[0-9]+");
    return leadingInteger.match(version()).captured().toInt();
}

bool QWApplication::isBetaVersion() const
{
    static const QRegularExpression mark("[0-9] ?(a|b|pb|rc)");
    return mark.match(version()).hasMatch();
}

QString QWApplication::supportDirectory() const
{
    return System::current().locations().mapped("~/Library/Application Support/Quorwell/" + d->_folderName());
}

QString QWApplication::tempDirectory() const
{
    return d->_tempDirectory();
}

bool QWApplication::usesSplashScreen() const
{
    return false;
}

bool QWApplication::usesSingleInstance() const
{
    return System::current().mainBundle().objectForInfoDictionaryKey("QWSingleInstance").toBool();
}

bool QWApplication::handlesExceptions() const
{
    return d->m_handlesExceptions;
}

void QWApplication::setHandleExceptions(bool handle)
{
    d->m_handlesExceptions = handle;
}

void QWApplication::finishLaunching()
{
    d->m_handlesGetUrl = true;
    SystemServices::current()
        .keyboardState->startWatching(); // plug-in scans ask what was held when the user started the host
    d->_finishLaunchingInside(qw::registeredCategories());
}

void QWApplication::getUrlWithReplyEvent(const QString &) {}

bool QWApplication::openFile(const QString &path)
{
    QObject *const delegate = platform::delegateOf(this);
    return delegate && platform::performReturning<bool>(delegate, "applicationOpenFile:", path).value_or(false);
}

bool QWApplication::notify(QObject *receiver, QEvent *event)
{
    return d->m_events.deliver(receiver, event);
}

void QWApplication::applicationDidFinishLaunching()
{
    if (QObject *const delegate = platform::delegateOf(this))
        platform::perform(delegate, "applicationDidFinishLaunching");
}

void QWApplication::Private::_launch()
{
    if (m_owner.usesSingleInstance() && _isSecondInstance())
        return quit();
    _receiveUrls(_urlsOfCommandLine());
    const auto launched = qScopeGuard([this] {
        m_launched = true;
        _deliverUrls();
    });
    m_owner.finishLaunching();
    System::current().backgroundWork().start([base = _tempDirectoryBase()]() -> std::function<void()> {
        qw::InstanceFolder::removeDead(base);
        return {};
    });
}

/// Listening comes first: of two instances that start together only one gets the name.
bool QWApplication::Private::_isSecondInstance()
{
    const QString identifier = System::current().mainBundle().identifier();
    auto &link = *SystemServices::current().instanceLink;
    return !link.listen(identifier, [this](const QString &url) { _receiveUrls({url}); }) &&
           link.handOver(identifier, qw::urlsForHost(_urlsOfCommandLine()));
}

/// Its files as URLs, so that they keep their place among them.
QStringList QWApplication::Private::_urlsOfCommandLine() const
{
    return qw::withFilesAsUrls(arguments().mid(1), m_startFolder);
}

void QWApplication::Private::_finishLaunchingInside(std::span<const qw::ApplicationCategory> categories)
{
    if (categories.empty())
        return m_owner.applicationDidFinishLaunching();
    const auto did = qScopeGuard([&] { _didFinishLaunching(categories.front()); });
    if (categories.front().willFinishLaunching)
        categories.front().willFinishLaunching(m_owner);
    _finishLaunchingInside(categories.subspan(1));
}

/// May run while an exception passes, so nothing may leave it.
void QWApplication::Private::_didFinishLaunching(const qw::ApplicationCategory &category) noexcept
{
    try {
        if (category.didFinishLaunching)
            category.didFinishLaunching(m_owner);
    } catch (...) {
        m_events.exceptionLeft();
    }
}

/// Anyone on the bus may call itself another instance, so what comes from there is chosen as the command line's are.
void QWApplication::Private::_receiveUrls(const QStringList &texts)
{
    m_urls += qw::urlsForHost(texts);
    if (m_launched)
        _deliverUrls();
}

/// Each in an event of its own, so that one whose handling fails does not hold up the others.
void QWApplication::Private::_deliverUrls()
{
    if (!m_handlesGetUrl)
        return;
    const QStringList urls = std::exchange(m_urls, {});
    for (const QString &url : urls)
        QMetaObject::invokeMethod(
            &m_owner, [this, url] { _deliver(url); }, Qt::QueuedConnection);
}

void QWApplication::Private::_deliver(const QString &url)
{
    if (const QString path = qw::fileOfUrl(url); !path.isEmpty())
        m_owner.openFile(path);
    else
        m_owner.getUrlWithReplyEvent(url);
}

/// The name as a file name.
QString QWApplication::Private::_folderName() const
{
    const QString folder = m_owner.name().replace('/', ':');
    return folder.startsWith('.') ? '_' + folder.mid(1) : folder;
}

QString QWApplication::Private::_tempDirectoryBase() const
{
    const QString place = QDir::tempPath(); // "" when what the environment names is not there
    const QString name = _folderName() + '.' + QString::number(::geteuid());
    return place.isEmpty() ? name : place + '/' + name;
}

QString QWApplication::Private::_tempDirectory()
{
    if (!m_tempDirectory || !QFileInfo(m_tempDirectory->path()).isDir())
        m_tempDirectory = std::make_unique<qw::InstanceFolder>(_tempDirectoryBase());
    const std::error_code &failure = m_tempDirectory->failure();
    if (failure && !std::exchange(m_toldOfTempDirectory, true))
        QWError(localized("A folder for temporary files could not be made."),
                QString::fromLocal8Bit(failure.message().c_str()))
            .alert();
    return m_tempDirectory->path();
}
