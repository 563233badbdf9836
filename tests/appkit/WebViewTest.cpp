#include "WebViewTest.h"

#include <QFile>
#include <QSignalSpy>

using namespace platform;

void WebViewTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<QWidget>();
    m_window->resize(400, 300);
    m_asked.clear();
    m_allows = [](const QUrl &) { return true; };
    m_view = m_views.make(m_window.get());
    m_view->widget()->setGeometry(m_window->rect());
    m_view->setPolicy([this](const QUrl &url) {
        m_asked += url;
        return m_allows(url);
    });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void WebViewTest::cleanup()
{
    m_view.reset();
    m_window.reset();
    m_folder.reset();
}

void WebViewTest::_write(const QString &name, const QByteArray &data) const
{
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}

void WebViewTest::_load(const QUrl &url)
{
    QSignalSpy finished(m_view.get(), &WebView::loadFinished);
    m_view->load(url);
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QVERIFY(finished.front().front().toBool());
}

void WebViewTest::_loadHtml(const QString &html)
{
    QSignalSpy finished(m_view.get(), &WebView::loadFinished);
    m_view->loadHtml(html, {});
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
    QVERIFY(finished.front().front().toBool());
}

QColor WebViewTest::_colour() const
{
    const QImage picture = m_view->widget()->grab().toImage();
    return picture.pixelColor(picture.rect().center());
}

bool WebViewTest::_messageIsShown() const
{
    auto *message = m_view->widget()->findChild<QWidget *>("message");
    return message && message->isVisible();
}
