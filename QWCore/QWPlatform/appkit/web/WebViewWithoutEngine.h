#pragma once

#include "QWPlatform/appkit/WebView.h"

#include <QWPlatform/qwplatform_private.h>

#include <QPointer>

class QTextBrowser;

namespace platform
{

/// Stands in where the browser engine cannot be loaded: plain pages, local ones and HTML that was handed over; the
/// policy decides as ever. Other addresses end with loadFinished(false).
class QWPLATFORM_TEST_EXPORT WebViewWithoutEngine : public WebView
{
    Q_OBJECT

public:
    explicit WebViewWithoutEngine(QWidget *parent);
    ~WebViewWithoutEngine() override;

    QWidget *widget() override;
    void load(const QUrl &url) override;
    void loadHtml(const QString &html, const QUrl &baseUrl) override;
    void goBack() override;
    void goForward() override;
    bool canGoBack() const override;
    bool canGoForward() const override;
    void print() override;
    void printToPdf(const QString &path, std::function<void(bool ok)> done) override;
    void setPolicy(Policy policy) override;
    void setAllowsRemoteParts(bool allows) override;

private:
    void _show(const QUrl &url, Navigation::Cause cause);
    bool _allows(const QUrl &url, Navigation::Cause cause = Navigation::Cause::Owner) const;
    void _finish(bool ok);

    QPointer<QTextBrowser> m_browser;
    Policy m_policy;
};

} // namespace platform
