#include "MainWindow.h"

#include "../audio/AudioDocument.h"
#include "../views/ChainStrip.h"
#include "../views/ElidedText.h"
#include "../views/EmptyState.h"
#include "../views/Icons.h"
#include "../views/TransportLine.h"
#include "../views/WaveformPair.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/WindowFrame.h>
#include <QWPlatform/foundation/Localization.h>
#include <QWPlatform/foundation/TextForms.h>
#include <QWPlatform/foundation/UserDefaults.h>

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace demo
{

using platform::localized;

namespace
{
constexpr QSize usualSize(1080, 680);

QStringList localFilesIn(const QMimeData &data)
{
    QStringList paths;
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile())
            paths += url.toLocalFile();
    }
    return paths;
}

platform::UserDefaults &defaults()
{
    return platform::System::current().userDefaults();
}

QString frameKey()
{
    return QGuiApplication::applicationDisplayName() + " Frame";
}

QString maximisedKey()
{
    return QGuiApplication::applicationDisplayName() + " Maximised";
}

bool isOnAScreen(const QRect &frame)
{
    return std::ranges::any_of(QGuiApplication::screens(),
                               [&](const QScreen *screen) { return screen->availableGeometry().intersects(frame); });
}
} // namespace

MainWindow::MainWindow(AudioDocument &document)
    : m_document(document)
    , m_stack(new QStackedWidget(this))
    , m_empty(new EmptyState(m_stack))
    , m_transport(new TransportLine(this))
{
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(16);
    m_stack->addWidget(m_empty);
    m_stack->addWidget(_makeContent());
    layout->addWidget(m_stack, 1);
    layout->addWidget(m_transport);
    setCentralWidget(central);
    setAcceptDrops(true);
    setMinimumSize(560, 400);
    resize(usualSize);
    connect(m_empty->openButton(), &QPushButton::clicked, this, &MainWindow::openRequested);
    connect(m_empty->toneButton(), &QPushButton::clicked, this, &MainWindow::testToneRequested);
    connect(m_transport, &TransportLine::cancelled, this, &MainWindow::cancelRequested);
    connect(&m_document, &AudioDocument::changed, this, &MainWindow::_showDocument);
    _showDocument();
}

MainWindow::~MainWindow() = default;

QPushButton *MainWindow::_makeButton(const QString &icon, const QString &title)
{
    auto *button = new QPushButton(title, this);
    button->setIcon(lineIcon(icon));
    button->setMinimumSize(button->sizeHint() + QSize(12, 4));
    return button;
}

QWidget *MainWindow::_makeHeader()
{
    auto *header = new QWidget(this);
    m_title = new ElidedText(header);
    QFont headline = m_title->font();
    headline.setPointSizeF(headline.pointSizeF() + 4);
    headline.setWeight(QFont::DemiBold);
    m_title->setFont(headline);
    m_open = _makeButton("open", localized("Open…"));
    m_effects = _makeButton("effect", localized("Effects"));
    m_instruments = _makeButton("instrument", localized("Instruments"));
    m_save = _makeButton("save", localized("Save As…"));
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_title, 1);
    for (QPushButton *button : {m_open, m_effects, m_instruments, m_save})
        layout->addWidget(button);
    connect(m_open, &QPushButton::clicked, this, &MainWindow::openRequested);
    connect(m_save, &QPushButton::clicked, this, &MainWindow::saveRequested);
    return header;
}

QWidget *MainWindow::_makeContent()
{
    auto *content = new QWidget(m_stack);
    m_chain = new ChainStrip(content);
    m_waveforms = new WaveformPair(m_viewport, content);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addWidget(_makeHeader());
    layout->addWidget(m_chain);
    layout->addWidget(m_waveforms, 1);
    connect(m_chain, &ChainStrip::stationChosen, this, &MainWindow::showStation);
    connect(&m_viewport, &Viewport::positionChanged, m_transport, &TransportLine::setPosition);
    connect(&m_viewport, &Viewport::selectionChanged, m_transport,
            [this] { m_transport->showSelection(m_viewport.selection()); });
    return content;
}

void MainWindow::setPlugInMenus(QMenu *effects, QMenu *instruments)
{
    m_effects->setMenu(effects);
    m_chain->addButton()->setMenu(effects);
    m_instruments->setMenu(instruments);
    // A button that has the focus goes down whenever its menu opens, but comes up only when it opened the menu itself.
    for (QPushButton *button : {m_effects, m_instruments, m_chain->addButton()})
        connect(button->menu(), &QMenu::aboutToHide, button, [button] { button->setDown(false); });
    for (QPushButton *button : {m_effects, m_instruments})
        button->setMinimumWidth(button->sizeHint().width() + 16); // the menu's arrow has been added
}

void MainWindow::_showDocument()
{
    m_stack->setCurrentIndex(m_document.isEmpty() ? 0 : 1);
    m_transport->showSound(m_document.result().get());
    const QString application = QCoreApplication::applicationName();
    setWindowTitle(m_document.isEmpty() ? application : m_document.title() + "[*] — " + application);
    setWindowModified(m_document.isModified());
    m_station = 0;
    _beginWithSource();
    if (m_document.isEmpty())
        return;
    m_title->setText(m_document.title());
    showStation(static_cast<int>(m_document.steps().size()));
}

/// Another sound has nothing to do with what was looked at, where and how closely.
void MainWindow::_beginWithSource()
{
    if (m_source == m_document.source())
        return;
    m_source = m_document.source();
    m_viewport.setDuration(0);
}

void MainWindow::showStation(int station)
{
    if (m_document.isEmpty())
        return;
    m_station = std::clamp(station, 0, static_cast<int>(m_document.steps().size()));
    m_chain->show(m_document, m_station);
    if (m_station == 0)
        return m_waveforms->showSound(m_document.sourceTitle(), m_document.source());
    const auto index = static_cast<size_t>(m_station - 1);
    const Step &step = m_document.steps()[index];
    m_waveforms->showStep(m_document.before(index), platform::formatted(localized("After %@"), {step.name}),
                          step.result);
}

ClipPointer MainWindow::shownClip() const
{
    return m_station == 0 ? m_document.source() : m_document.steps()[static_cast<size_t>(m_station - 1)].result;
}

void MainWindow::showRuler(bool visible)
{
    m_waveforms->showRuler(visible);
}

bool MainWindow::showsRuler() const
{
    return m_waveforms->showsRuler();
}

void MainWindow::showChain(bool visible)
{
    m_chain->setVisible(visible);
}

bool MainWindow::showsChain() const
{
    return !m_chain->isHidden();
}

void MainWindow::restoreFrame()
{
    const QRect frame = platform::TextForms::wholeRectFromString(defaults().string(frameKey()));
    const bool isShown = frame.isValid() && isOnAScreen(frame);
    if (isShown)
        setGeometry(frame);
    else
        platform::centerWindow(*this, size());
    platform::constrainToScreen(*this);
    m_fittedFrame = frame.isValid() && geometry() != frame ? geometry() : QRect();
    m_remembersFrame = true;
    if (defaults().boolean(maximisedKey()))
        setWindowState(windowState() | Qt::WindowMaximized);
}

void MainWindow::_rememberFrame() const
{
    if (!m_remembersFrame)
        return;
    defaults().setObject(maximisedKey(), isMaximized());
    const QRect frame = normalGeometry();
    if (frame.isValid() && frame != m_fittedFrame)
        defaults().setObject(frameKey(), platform::TextForms::stringFromRect(frame));
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (mayClose && !mayClose())
        return event->ignore();
    _rememberFrame();
    event->accept();
    Q_EMIT closed();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (localFilesIn(*event->mimeData()).isEmpty())
        return;
    event->acceptProposedAction();
    m_empty->setWelcoming(true);
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent *)
{
    m_empty->setWelcoming(false);
}

void MainWindow::dropEvent(QDropEvent *event)
{
    m_empty->setWelcoming(false);
    event->acceptProposedAction();
    Q_EMIT filesDropped(localFilesIn(*event->mimeData()));
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        Q_EMIT cancelRequested();
    else
        QMainWindow::keyPressEvent(event);
}

} // namespace demo
