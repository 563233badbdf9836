#include "QWApplication.h"

#include "QWApplicationLog.h"
#include "QWBase/files/InstanceFolder.h"
#include "QWError.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/ResponderChain.h>
#include <QWPlatform/appkit/Selector.h>
#include <QWPlatform/appkit/Theme.h>
#include <QWPlatform/appkit/events/PendingInput.h>
#include <QWPlatform/appkit/menus/MenuEvents.h>
#include <QWPlatform/appkit/menus/MenuKeys.h>
#include <QWPlatform/appkit/responders/FirstResponder.h>
#include <QWPlatform/appkit/windows/InstanceLink.h>
#include <QWPlatform/devices/input/KeyboardState.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/foundation/Bundle.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/Locations.h>
#include <QWPlatform/network/transfers/Proxies.h>

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QThread>

#include <cxxabi.h>
#include <unistd.h>

using platform::localized;
using platform::System;

namespace
{
QWApplication *theApplication = nullptr;

/// In order of registration, outermost first.
std::vector<QWApplicationCategory> &registeredCategories()
{
    static std::vector<QWApplicationCategory> categories;
    return categories;
}

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

/// The URL schemes that the host's Info.plist claims, in lower case.
QStringList hostSchemes()
{
    QStringList schemes;
    const QVariantList types = System::current().mainBundle().objectForInfoDictionaryKey("CFBundleURLTypes").toList();
    for (const QVariant &type : types)
        for (const QVariant &scheme : type.toMap().value("CFBundleURLSchemes").toList())
            schemes += scheme.toString().toLower();
    return schemes;
}

/// The scheme of an argument that has the form of a URL, in lower case; "" for any other argument.
QString schemeOf(const QString &argument)
{
    static const QRegularExpression form("^([A-Za-z][A-Za-z0-9+.-]+):.");
    return form.match(argument).captured(1).toLower();
}

/// Those of @p texts that are URLs of the host's own schemes. A host that claims none gets whatever looks like one with
/// an authority ("scheme://…").
QStringList urlsForHost(QStringList texts)
{
    texts.removeIf([](const QString &text) { return schemeOf(text).isEmpty(); });
    if (texts.isEmpty())
        return texts;
    const QStringList schemes = hostSchemes();
    texts.removeIf([&](const QString &text) {
        return schemes.isEmpty() ? !text.contains("://") : !schemes.contains(schemeOf(text));
    });
    return texts;
}

QString textOfCurrentException()
{
    try {
        throw;
    } catch (const std::exception &exception) {
        return QString::fromLocal8Bit(exception.what());
    } catch (...) {
        const std::type_info *const type = abi::__cxa_current_exception_type();
        return type ? QString("exception of type %1").arg(type->name()) : QString("exception of unknown type");
    }
}
} // namespace

QWApplication::QWApplication(int &argc, char **argv)
    : QApplication(prepared(argc), argv)
{
    theApplication = this;
    setApplicationName(QWApplication::name()); // what screen readers say, and the title of alerts
    setQuitOnLastWindowClosed(false);
    platform::applyTheme(*this, platform::ThemeChoice::System);
    for (const QWApplicationCategory &category : registeredCategories()) {
        if (category.sendEvent)
            m_sendEvent.push_back(category.sendEvent);
        if (category.init)
            category.init(*this);
    }
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

void QWApplication::registerCategory(const QWApplicationCategory &category)
{
    if (theApplication)
        qFatal("The category %s was registered after the application object had been made.", category.name);
    registeredCategories().push_back(category);
}

int QWApplication::exec()
{
    if (theApplication)
        QMetaObject::invokeMethod(theApplication, &QWApplication::_launch, Qt::QueuedConnection);
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
    return System::current().locations().mapped("~/Library/Application Support/Quorwell/" + _folderName());
}

QString QWApplication::tempDirectory() const
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

bool QWApplication::usesSplashScreen() const
{
    return false;
}

bool QWApplication::usesSingleInstance() const
{
    return System::current().mainBundle().objectForInfoDictionaryKey("QWSingleInstance").toBool();
}

void QWApplication::finishLaunching()
{
    m_handlesGetUrl = true;
    System::current().keyboardState().startWatching(); // plug-in scans ask what was held when the user started the host
    _finishLaunchingInside(registeredCategories());
}

void QWApplication::getUrlWithReplyEvent(const QString &) {}

bool QWApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        if (platform::PendingInput::takes(receiver, event))
            return true;
        for (const SendEvent isTaken : m_sendEvent)
            if (isTaken(*this, receiver, event))
                return true;
        return _notify(receiver, event);
    } catch (const abi::__forced_unwind &) {
        throw; // a thread that is being cancelled
    } catch (...) {
        _exceptionLeftEvent();
        return true;
    }
}

void QWApplication::applicationDidFinishLaunching()
{
    if (QObject *const delegate = platform::delegateOf(this))
        platform::perform(delegate, "applicationDidFinishLaunching");
}

void QWApplication::_launch()
{
    if (usesSingleInstance() && _isSecondInstance())
        return quit();
    _receiveUrls(arguments().mid(1));
    const auto launched = qScopeGuard([this] {
        m_launched = true;
        _deliverUrls();
    });
    finishLaunching();
    System::current().backgroundWork().start([base = _tempDirectoryBase()]() -> std::function<void()> {
        qw::InstanceFolder::removeDead(base);
        return {};
    });
}

/// Listening comes first: of two instances that start together only one gets the name.
bool QWApplication::_isSecondInstance()
{
    const QString identifier = System::current().mainBundle().identifier();
    auto &link = System::current().instanceLink();
    return !link.listen(identifier, [this](const QString &url) { _receiveUrls({url}); }) &&
           link.handOver(identifier, urlsForHost(arguments().mid(1)));
}

void QWApplication::_finishLaunchingInside(std::span<const QWApplicationCategory> categories)
{
    if (categories.empty())
        return applicationDidFinishLaunching();
    const auto did = qScopeGuard([&] { _didFinishLaunching(categories.front()); });
    if (categories.front().willFinishLaunching)
        categories.front().willFinishLaunching(*this);
    _finishLaunchingInside(categories.subspan(1));
}

/// May run while an exception passes, so nothing may leave it.
void QWApplication::_didFinishLaunching(const QWApplicationCategory &category) noexcept
{
    try {
        if (category.didFinishLaunching)
            category.didFinishLaunching(*this);
    } catch (...) {
        _exceptionLeftEvent();
    }
}

/// Anyone on the bus may call itself another instance, so what comes from there is chosen as the command line's are.
void QWApplication::_receiveUrls(const QStringList &texts)
{
    m_urls += urlsForHost(texts);
    if (m_launched)
        _deliverUrls();
}

/// Each in an event of its own, so that one whose handling fails does not hold up the others.
void QWApplication::_deliverUrls()
{
    if (!m_handlesGetUrl)
        return;
    const QStringList urls = std::exchange(m_urls, {});
    for (const QString &url : urls)
        QMetaObject::invokeMethod(
            this, [this, url] { getUrlWithReplyEvent(url); }, Qt::QueuedConnection);
}

/// The name as a file name.
QString QWApplication::_folderName() const
{
    const QString folder = name().replace('/', ':');
    return folder.startsWith('.') ? '_' + folder.mid(1) : folder;
}

QString QWApplication::_tempDirectoryBase() const
{
    const QString place = QDir::tempPath(); // "" when what the environment names is not there
    const QString name = _folderName() + '.' + QString::number(::geteuid());
    return place.isEmpty() ? name : place + '/' + name;
}

bool QWApplication::_notify(QObject *receiver, QEvent *event)
{
    if (!receiver->isWidgetType())
        return QApplication::notify(receiver, event);
    if (platform::handleMenuEvent(*receiver, *event))
        return true;
    return event->type() == QEvent::KeyPress ? _notifyKeyPress(receiver, static_cast<QKeyEvent *>(event))
                                             : QApplication::notify(receiver, event);
}

/// A key press that no widget takes, or that a text would take by mistake, is tried as a key equivalent of the menus,
/// once: widgets hand keys on to other widgets, while a dialog opened by a key runs an event loop of its own and gets
/// keys of its own.
bool QWApplication::_notifyKeyPress(QObject *receiver, QKeyEvent *event)
{
    const int level = QThread::currentThread()->loopLevel();
    if (level == m_keyPressLevel)
        return QApplication::notify(receiver, event);
    const int outer = std::exchange(m_keyPressLevel, level);
    const auto leave = qScopeGuard([&] { m_keyPressLevel = outer; });
    if (platform::isTakenByMistake(*event) && _performKeyEquivalent(*event))
        return true;
    const bool handled = QApplication::notify(receiver, event);
    return (!event->isAccepted() && _performKeyEquivalent(*event)) || handled || event->isAccepted();
}

bool QWApplication::_performKeyEquivalent(QKeyEvent &event)
{
    if (activePopupWidget() || !platform::performKeyEquivalent(event))
        return false;
    event.accept();
    return true;
}

/// Within a catch block, in the thread whose event it was.
void QWApplication::_exceptionLeftEvent() noexcept
{
    try {
        const QString reason = textOfCurrentException();
        if (QThread::currentThread() == thread())
            _reportException(reason);
        else
            QMetaObject::invokeMethod(
                this, [this, reason] { _reportException(reason); }, Qt::QueuedConnection);
    } catch (...) {
        // Nothing more can be done: not even the text of the exception could be made.
    }
}

void QWApplication::_reportException(const QString &reason) noexcept
{
    try {
        QWApplicationLog::sharedLog().errorMessage({"QWApplication"},
                                                   "An exception left the handling of an event: " + reason);
        for (const QWApplicationCategory &category : registeredCategories())
            if (category.exceptionLeftEvent)
                category.exceptionLeftEvent(*this, reason);
    } catch (...) {
        // Reporting an exception must not end the program.
    }
}
