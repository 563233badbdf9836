#include "WebEngineView.h"

#include "QWPlatform/appkit/web/WebViewPrinting.h"
#include "QWPlatform/foundation/Localization.h"
#include "WebEngineMessage.h"
#include "WebEnginePage.h"
#include "WebEngineWidget.h"

#include <QLocale>
#include <QPrinter>
#include <QSaveFile>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineProfile>

namespace platform
{

namespace
{
bool writeFile(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    return !data.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
}
} // namespace

WebEngineView::WebEngineView(QWidget *parent)
    : m_profile(std::make_unique<QWebEngineProfile>()) // no name: nothing is written to the disk
    , m_page(std::make_unique<WebEnginePage>(m_profile.get()))
    , m_widget(new WebEngineWidget(parent))
{
    m_widget->setPage(m_page.get());
    m_page->setBackgroundColor(m_widget->palette().color(QPalette::Base)); // no flash of white before the first page
    WebEngineView::setAllowsRemoteParts(false);
    _connectPage();
}

WebEngineView::~WebEngineView()
{
    m_page->disconnect(this);
    delete m_widget;
}

void WebEngineView::_connectPage()
{
    connect(m_page.get(), &QWebEnginePage::loadFinished, this, &WebView::loadFinished);
    connect(m_page.get(), &QWebEnginePage::loadFinished, this, &WebView::historyChanged);
    connect(m_page.get(), &QWebEnginePage::urlChanged, this, &WebView::historyChanged);
    connect(m_page.get(), &QWebEnginePage::loadingChanged, this, &WebEngineView::_loadingChanged);
    connect(m_widget, &QWebEngineView::printFinished, this, [this](bool ok) {
        m_printer.reset();
        Q_EMIT printFinished(ok);
    });
    connect(m_page.get(), &QWebEnginePage::renderProcessTerminated, this, &WebEngineView::_stopped);
}

QWidget *WebEngineView::widget()
{
    return m_widget;
}

void WebEngineView::load(const QUrl &url)
{
    m_page->load(url);
}

void WebEngineView::loadHtml(const QString &html, const QUrl &baseUrl)
{
    m_page->showHtml(html, baseUrl);
}

void WebEngineView::goBack()
{
    m_page->triggerAction(QWebEnginePage::Back);
}

void WebEngineView::goForward()
{
    m_page->triggerAction(QWebEnginePage::Forward);
}

bool WebEngineView::canGoBack() const
{
    return m_page->history()->canGoBack();
}

bool WebEngineView::canGoForward() const
{
    return m_page->history()->canGoForward();
}

void WebEngineView::print()
{
    if (!m_widget || m_printer)
        return;
    askForPrinter(*m_widget, [this](std::shared_ptr<QPrinter> printer) {
        m_printer = std::move(printer);
        m_widget->print(m_printer.get());
    });
}

void WebEngineView::printToPdf(const QString &path, std::function<void(bool ok)> done)
{
    const QPointer<WebEngineView> self(this);
    m_page->printToPdf(
        [self, path, done = std::move(done)](const QByteArray &pdf) {
            if (self) // a view that goes answers nobody
                done(writeFile(path, pdf));
        },
        webPageLayout(QLocale::system()));
}

void WebEngineView::setPolicy(Policy policy)
{
    m_page->setPolicy(std::move(policy));
}

void WebEngineView::setAllowsRemoteParts(bool allows)
{
    m_profile->setUrlRequestInterceptor(allows ? nullptr : &m_localPartsOnly);
}

void WebEngineView::_loadingChanged(const QWebEngineLoadingInfo &info)
{
    if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus)
        return _showMessage(localized("This page cannot be shown."), info.url());
    if (info.status() == QWebEngineLoadingInfo::LoadSucceededStatus)
        m_page->setBackgroundColor(Qt::white); // what pages without a style of their own, whose text is black, rely on
    if (m_message && info.status() != QWebEngineLoadingInfo::LoadStoppedStatus)
        m_message->hide();
}

void WebEngineView::_stopped()
{
    _showMessage(localized("This page has stopped working."), m_page->url());
}

void WebEngineView::_showMessage(const QString &text, const QUrl &url)
{
    if (!m_widget)
        return;
    if (!m_message) {
        m_message = new WebEngineMessage(m_widget);
        connect(m_message, &WebEngineMessage::tryAgain, m_page.get(), [this] { m_page->load(m_failedUrl); });
    }
    m_failedUrl = url;
    m_message->showText(text);
}

} // namespace platform
