#include "WebEnginePage.h"

#include <QDebug>
#include <QDir>
#include <QTemporaryFile>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

#include <utility>

namespace platform
{

namespace
{
/// The engine takes text as a "data:" address of at most 2 MB, percent-encoded.
constexpr qsizetype longestEncodedText = 2'000'000;
constexpr qsizetype encodedSizeOfByte = 3;

struct Setting
{
    QWebEngineSettings::WebAttribute attribute;
    bool on;
};

constexpr Setting safeSettings[] = {
    {QWebEngineSettings::JavascriptEnabled, false},
    {QWebEngineSettings::JavascriptCanOpenWindows, false},
    {QWebEngineSettings::JavascriptCanAccessClipboard, false},
    {QWebEngineSettings::LocalStorageEnabled, false},
    {QWebEngineSettings::LocalContentCanAccessRemoteUrls, false},
    {QWebEngineSettings::LocalContentCanAccessFileUrls,
     true}, // style sheets and images; there is no script to abuse it
    {QWebEngineSettings::HyperlinkAuditingEnabled, false},
    {QWebEngineSettings::PluginsEnabled, false},
    {QWebEngineSettings::PdfViewerEnabled, false},
    {QWebEngineSettings::FullScreenSupportEnabled, false},
    {QWebEngineSettings::WebGLEnabled, false},
    {QWebEngineSettings::AutoLoadIconsForPage, false},
    {QWebEngineSettings::NavigateOnDropEnabled, false},
    {QWebEngineSettings::ErrorPageEnabled, false},
    {QWebEngineSettings::FocusOnNavigationEnabled, false},
};

using Navigation = WebView::Navigation;

/// The engine takes whatever a frame begins with for "other", and a refresh for a redirection.
Navigation::Cause causeOf(QWebEnginePage::NavigationType type)
{
    switch (type) {
    case QWebEnginePage::NavigationTypeTyped:
    case QWebEnginePage::NavigationTypeBackForward:
    case QWebEnginePage::NavigationTypeReload:
        return Navigation::Cause::Owner;
    case QWebEnginePage::NavigationTypeLinkClicked:
    case QWebEnginePage::NavigationTypeFormSubmitted:
        return Navigation::Cause::User;
    default:
        return Navigation::Cause::Page;
    }
}

QByteArray withBase(const QByteArray &html, const QUrl &baseUrl)
{
    if (baseUrl.isEmpty())
        return html;
    const QByteArray base = "<base href=\"" + baseUrl.toString(QUrl::FullyEncoded).toHtmlEscaped().toUtf8() + "\">";
    const QByteArrayView headTag = "<head>";
    const qsizetype head = html.indexOf(headTag);
    return QByteArray(html).insert(head < 0 ? 0 : head + headTag.size(), base);
}
} // namespace

WebEnginePage::WebEnginePage(QWebEngineProfile *profile)
    : QWebEnginePage(profile)
{
    for (const Setting &setting : safeSettings)
        settings()->setAttribute(setting.attribute, setting.on);
    connect(this, &QWebEnginePage::newWindowRequested, this, &WebEnginePage::_openNewWindow);
}

WebEnginePage::~WebEnginePage() = default;

void WebEnginePage::setPolicy(WebView::Policy policy)
{
    m_policy = std::move(policy);
}

void WebEnginePage::showHtml(const QString &html, const QUrl &baseUrl)
{
    const QByteArray text = html.toUtf8();
    if (text.size() * encodedSizeOfByte < longestEncodedText)
        setHtml(html, baseUrl);
    else
        _showLongHtml(text, baseUrl);
}

void WebEnginePage::_showLongHtml(const QByteArray &html, const QUrl &baseUrl)
{
    m_longHtml = std::make_unique<QTemporaryFile>(QDir::tempPath() + "/page.XXXXXX.html");
    const QByteArray byteOrderMark = "\xEF\xBB\xBF"; // tells the encoding whatever the page says
    if (!m_longHtml->open() || m_longHtml->write(byteOrderMark + withBase(html, baseUrl)) < 0 || !m_longHtml->flush()) {
        qWarning("A long page cannot be written to %s", qPrintable(m_longHtml->fileName()));
        return Q_EMIT loadFinished(false);
    }
    load(QUrl::fromLocalFile(m_longHtml->fileName()));
}

void WebEnginePage::_openNewWindow(const QWebEngineNewWindowRequest &request)
{
    if (!request.isUserInitiated())
        return;
    m_clicked = request.requestedUrl();
    load(m_clicked);
}

WebView::Navigation::Cause WebEnginePage::_causeOf(const QUrl &url, NavigationType type)
{
    const QUrl clicked = std::exchange(m_clicked, {});
    const bool isFollowed = type == NavigationTypeTyped && !clicked.isEmpty() && clicked == url;
    return isFollowed ? Navigation::Cause::User : causeOf(type);
}

bool WebEnginePage::_isOwnText(const QUrl &url) const
{
    return url.scheme() == u"data" || (m_longHtml && url == QUrl::fromLocalFile(m_longHtml->fileName()));
}

bool WebEnginePage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    const Navigation::Cause cause = isMainFrame ? _causeOf(url, type) : causeOf(type);
    if (m_showsOwnText && isMainFrame && cause == Navigation::Cause::Page)
        return false;
    const bool isOwnText = isMainFrame && cause == Navigation::Cause::Owner && _isOwnText(url);
    const QUrl told = isOwnText ? QUrl("data:text/html;charset=UTF-8,") : url;
    const bool accepted = !m_policy || m_policy({.url = told, .cause = cause, .isMainFrame = isMainFrame});
    if (accepted && isMainFrame)
        m_showsOwnText = isOwnText;
    return accepted;
}

} // namespace platform
