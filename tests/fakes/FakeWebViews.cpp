#include "FakeWebViews.h"

#include <QWidget>

FakeWebView::FakeWebView(QWidget *parent)
    : m_widget(new QWidget(parent))
{
}

FakeWebView::~FakeWebView()
{
    delete m_widget;
}

QWidget *FakeWebView::widget()
{
    return m_widget;
}

void FakeWebView::load(const QUrl &url)
{
    _navigate(url);
}

void FakeWebView::loadHtml(const QString &newHtml, const QUrl &newBaseUrl)
{
    html = newHtml;
    baseUrl = newBaseUrl;
    _navigate(QUrl("data:text/html"));
}

void FakeWebView::printToPdf(const QString &path, std::function<void(bool)> done)
{
    pdfs.append(path);
    done(writesPdfs);
}

bool FakeWebView::click(const QUrl &url)
{
    return _navigate(url, Navigation::Cause::User);
}

bool FakeWebView::refresh(const QUrl &url)
{
    return this->url().scheme() != u"data" && _navigate(url, Navigation::Cause::Page);
}

bool FakeWebView::showFrame(const QUrl &url)
{
    return !m_policy || m_policy({.url = url, .cause = Navigation::Cause::Page, .isMainFrame = false});
}

QUrl FakeWebView::url() const
{
    return m_position < 0 ? QUrl() : m_history.at(static_cast<std::size_t>(m_position));
}

bool FakeWebView::_navigate(const QUrl &url, Navigation::Cause cause)
{
    if (m_policy && !m_policy({.url = url, .cause = cause}))
        return false;
    m_history.resize(static_cast<std::size_t>(m_position + 1));
    m_history.push_back(url);
    ++m_position;
    Q_EMIT historyChanged();
    Q_EMIT loadFinished(true);
    return true;
}

void FakeWebView::_move(int steps)
{
    const int target = m_position + steps;
    if (target < 0 || target >= static_cast<int>(m_history.size()))
        return;
    m_position = target;
    Q_EMIT historyChanged();
}

std::unique_ptr<platform::WebView> FakeWebViews::make(QWidget *parent)
{
    auto view = std::make_unique<FakeWebView>(parent);
    views.emplace_back(view.get());
    return view;
}
