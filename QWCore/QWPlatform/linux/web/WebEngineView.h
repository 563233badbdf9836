#pragma once

#include "LocalPartsOnly.h"
#include "QWPlatform/appkit/WebView.h"

#include <QPointer>

#include <memory>

class QPrinter;
class QWebEngineLoadingInfo;
class QWebEngineProfile;

namespace platform
{

class WebEngineMessage;
class WebEnginePage;
class WebEngineWidget;

/// A browser view of the engine. It keeps nothing: history, cookies and cache are in memory and go with it.
class WebEngineView : public WebView
{
    Q_OBJECT

public:
    explicit WebEngineView(QWidget *parent);
    ~WebEngineView() override;

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
    void _connectPage();
    void _loadingChanged(const QWebEngineLoadingInfo &info);
    void _stopped();
    void _showMessage(const QString &text, const QUrl &url);

    std::shared_ptr<QPrinter> m_printer; ///< While a page is being printed.

    LocalPartsOnly m_localPartsOnly;

    // Destroyed from below: the widget shows the page, the page lives in the profile.
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<WebEnginePage> m_page;
    QPointer<WebEngineWidget> m_widget;
    QPointer<WebEngineMessage> m_message; ///< Made when there is something to say.
    QUrl m_failedUrl;                     ///< What its button loads.
};

} // namespace platform
