#include "WebViewWithoutEngine.h"

#include "WebViewPrinting.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QPrinter>
#include <QTextBrowser>

namespace platform
{

WebViewWithoutEngine::WebViewWithoutEngine(QWidget *parent)
    : m_browser(new QTextBrowser(parent))
{
    m_browser->setOpenLinks(false);
    m_browser->setFrameShape(QFrame::NoFrame);
    connect(m_browser, &QTextBrowser::anchorClicked, this,
            [this](const QUrl &url) { _show(url, Navigation::Cause::User); });
    connect(m_browser, &QTextBrowser::historyChanged, this, &WebView::historyChanged);
}

WebViewWithoutEngine::~WebViewWithoutEngine()
{
    delete m_browser;
}

QWidget *WebViewWithoutEngine::widget()
{
    return m_browser;
}

void WebViewWithoutEngine::load(const QUrl &url)
{
    _show(url, Navigation::Cause::Owner);
}

void WebViewWithoutEngine::_show(const QUrl &url, Navigation::Cause cause)
{
    if (!_allows(url, cause) || !m_browser)
        return _finish(false);
    if (!QFileInfo(url.toLocalFile()).isFile())
        return _finish(false);
    m_browser->setSource(url, QTextDocument::HtmlResource);
    _finish(true);
}

void WebViewWithoutEngine::loadHtml(const QString &html, const QUrl &baseUrl)
{
    if (!_allows(QUrl("data:text/html")) || !m_browser)
        return _finish(false);
    m_browser->document()->setBaseUrl(baseUrl);
    m_browser->setHtml(html);
    _finish(true);
}

void WebViewWithoutEngine::goBack()
{
    if (canGoBack() && _allows(m_browser->historyUrl(-1)))
        m_browser->backward();
}

void WebViewWithoutEngine::goForward()
{
    if (canGoForward() && _allows(m_browser->historyUrl(1)))
        m_browser->forward();
}

bool WebViewWithoutEngine::canGoBack() const
{
    return m_browser && m_browser->isBackwardAvailable();
}

bool WebViewWithoutEngine::canGoForward() const
{
    return m_browser && m_browser->isForwardAvailable();
}

void WebViewWithoutEngine::print()
{
    if (!m_browser)
        return;
    askForPrinter(*m_browser, [this](const std::shared_ptr<QPrinter> &printer) {
        m_browser->print(printer.get());
        Q_EMIT printFinished(printer->printerState() != QPrinter::Error);
    });
}

void WebViewWithoutEngine::printToPdf(const QString &path, std::function<void(bool ok)> done)
{
    QFile file(path);
    const bool writable = m_browser && file.open(QIODevice::WriteOnly);
    file.close();
    if (writable) {
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(path);
        printer.setPageLayout(webPageLayout(QLocale::system()));
        m_browser->print(&printer);
    }
    done(writable && QFileInfo(path).size() > 0);
}

void WebViewWithoutEngine::setPolicy(Policy policy)
{
    m_policy = std::move(policy);
}

/// It has no network at all.
void WebViewWithoutEngine::setAllowsRemoteParts(bool) {}

bool WebViewWithoutEngine::_allows(const QUrl &url, Navigation::Cause cause) const
{
    return !m_policy || m_policy({.url = url, .cause = cause});
}

void WebViewWithoutEngine::_finish(bool ok)
{
    // From the loop, as the engine does it.
    QMetaObject::invokeMethod(
        this, [this, ok] { Q_EMIT loadFinished(ok); }, Qt::QueuedConnection);
}

} // namespace platform
