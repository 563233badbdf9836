#include "Tour.h"

#include "../app/DemoApplication.h"
#include "ScreenPicture.h"

#include <QWPlatform/appkit/windows/AlertResponder.h>
#include <QWUtilities/shell/QWSplashScreen.h>

#include <QLabel>
#include <QWidget>

#include <cstdio>

namespace demo
{

namespace
{
constexpr int pollMilliseconds = 25;
constexpr qint64 patienceMilliseconds = 60000; ///< For one step.
const QEvent::Type splashPainted = static_cast<QEvent::Type>(QEvent::registerEventType());

void tell(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}
} // namespace

Tour::Tour(DemoApplication &application, const QString &directory)
    : m_application(application)
    , m_directory(directory)
{
    m_timer.setInterval(pollMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &Tour::_poll);
    platform::setAlertResponder([this](const platform::Alert &alert, QWidget *panel) { return _answer(alert, panel); });
    application.installEventFilter(this);
}

Tour::~Tour()
{
    platform::setAlertResponder({});
}

int Tour::_answer(const platform::Alert &alert, QWidget *panel)
{
    const bool pictured = m_current < m_steps.size() && m_steps[m_current]->takesAlert(alert, *panel);
    if (!pictured)
        tell(QStringLiteral("alert: %1 [%2]").arg(alert.messageText, alert.buttons.value(0, QStringLiteral("OK"))));
    return 0;
}

// The main thread is busy while the splash screen shows: it only paints and delivers what was posted. So a paint of it
// posts the wish for a picture.
bool Tour::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_splashIsTelling && QWSplashScreen::isVisible()) {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && widget->window() == QWSplashScreen::splashScreen().window())
            QCoreApplication::postEvent(this, new QEvent(splashPainted));
    }
    return false;
}

bool Tour::event(QEvent *event)
{
    if (event->type() != splashPainted)
        return QObject::event(event);
    _pictureSplash();
    return true;
}

void Tour::_pictureSplash()
{
    if (m_splashIsTelling || !QWSplashScreen::isVisible())
        return;
    QWidget *window = QWSplashScreen::splashScreen().window();
    const auto *action = window->findChild<QLabel *>("actionText");
    if (!action || action->text().isEmpty())
        return;
    m_splashIsTelling = action->text().contains('\'');
    m_splashPicture = ScreenPicture::of(QList<QWidget *>{window});
}

void Tour::start(std::vector<std::unique_ptr<TourStep>> steps)
{
    m_steps = std::move(steps);
    if (!m_directory.mkpath(".")) {
        std::fprintf(stderr, "The folder %s cannot be made\n", qPrintable(m_directory.path()));
        return QTimer::singleShot(0, this, [] { QCoreApplication::exit(1); });
    }
    QTimer::singleShot(0, this, [this] {
        m_application.removeEventFilter(this);
        _beginStep();
        m_timer.start();
    });
}

void Tour::_beginStep()
{
    m_sinceBegin.start();
    m_inStep = true;
    m_steps[m_current]->begin(m_application);
    m_inStep = false;
}

void Tour::_poll()
{
    if (m_inStep)
        return;
    m_inStep = true;
    const auto picture = m_steps[m_current]->picture(m_application);
    m_inStep = false;
    if (picture)
        _endStep(_save(*picture, m_steps[m_current]->name()));
    else if (m_steps[m_current]->hasFailed() || m_sinceBegin.elapsed() > patienceMilliseconds)
        _endStep(false);
}

bool Tour::_save(const QImage &picture, const QString &name)
{
    const QString path = m_directory.filePath(name + ".png");
    if (!ScreenPicture::hasContent(picture) || !picture.save(path))
        return false;
    tell(QStringLiteral("%1: %2").arg(name, path));
    return true;
}

void Tour::_endStep(bool made)
{
    TourStep &step = *m_steps[m_current];
    if (!made)
        std::fprintf(stderr, "%s: this picture could not be made\n", qPrintable(step.name()));
    m_allMade = m_allMade && made;
    step.end(m_application);
    if (++m_current < m_steps.size())
        return _beginStep();
    m_timer.stop();
    QCoreApplication::exit(m_allMade ? 0 : 1);
}

} // namespace demo
