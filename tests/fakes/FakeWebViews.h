#pragma once

#include <QWPlatform/appkit/WebView.h>

#include <QPointer>
#include <QStringList>

#include <vector>

/// A browser view without an engine: keeps a history of addresses and what was printed.
class FakeWebView : public platform::WebView
{
    Q_OBJECT

public:
    explicit FakeWebView(QWidget *parent);
    ~FakeWebView() override;

    QWidget *widget() override;
    void load(const QUrl &url) override;
    void loadHtml(const QString &html, const QUrl &baseUrl) override;
    void goBack() override { _move(-1); }
    void goForward() override { _move(1); }
    bool canGoBack() const override { return m_position > 0; }
    bool canGoForward() const override { return m_position + 1 < static_cast<int>(m_history.size()); }
    void print() override { ++prints; }
    void printToPdf(const QString &path, std::function<void(bool)> done) override;
    void setPolicy(Policy policy) override { m_policy = std::move(policy); }
    void setAllowsRemoteParts(bool allows) override { allowsRemoteParts = allows; }

    /// Plays the user's click on a link; false when the policy refused.
    bool click(const QUrl &url);

    /// Plays a page that goes on by itself, as by a refresh, and one with a frame; false when the policy refused.
    bool refresh(const QUrl &url);
    bool showFrame(const QUrl &url);

    QUrl url() const; ///< Of the page shown; empty before the first one.
    QString html;     ///< Of the last loadHtml().
    QUrl baseUrl;
    bool allowsRemoteParts = false;
    int prints = 0;
    QStringList pdfs; ///< Paths printed to.
    bool writesPdfs = true;

private:
    bool _navigate(const QUrl &url, Navigation::Cause cause = Navigation::Cause::Owner);
    void _move(int steps);

    QPointer<QWidget> m_widget;
    Policy m_policy;
    std::vector<QUrl> m_history;
    int m_position = -1;
};

/// Makes fake views and remembers them.
class FakeWebViews : public platform::WebViews
{
public:
    std::unique_ptr<platform::WebView> make(QWidget *parent) override;

    std::vector<QPointer<FakeWebView>> views;
};
