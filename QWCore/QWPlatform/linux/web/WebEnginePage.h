#pragma once

#include "QWPlatform/appkit/WebView.h"

#include <QWebEnginePage>

#include <memory>

class QTemporaryFile;
class QWebEngineNewWindowRequest;

namespace platform
{

/// A page that asks the policy before it goes anywhere, in its frames too. Links that want a window of their own open
/// in this one, and what the owner gave as text goes nowhere by itself.
class WebEnginePage : public QWebEnginePage
{
    Q_OBJECT

public:
    explicit WebEnginePage(QWebEngineProfile *profile);
    ~WebEnginePage() override;

    void setPolicy(WebView::Policy policy);

    /// Shows @p html however long it is.
    void showHtml(const QString &html, const QUrl &baseUrl);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;

private:
    void _showLongHtml(const QByteArray &html, const QUrl &baseUrl);
    void _openNewWindow(const QWebEngineNewWindowRequest &request);
    WebView::Navigation::Cause _causeOf(const QUrl &url, NavigationType type);
    bool _isOwnText(const QUrl &url) const;

    WebView::Policy m_policy;
    bool m_showsOwnText = false; ///< The page, or the one on its way, is the owner's text.
    QUrl m_clicked;              ///< The target of a link that wants a window of its own, until the policy is asked.
    std::unique_ptr<QTemporaryFile> m_longHtml; ///< What is shown, when the engine does not take it as text.
};

} // namespace platform
