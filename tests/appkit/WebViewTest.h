#pragma once

#include <QWPlatform/linux/desktop/LinuxWebViews.h>

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

/// Tests of a view in a window, with a policy that writes down what it is asked, and of pages in a folder.
class WebViewTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init();
    void cleanup();

protected:
    static constexpr int patience = 20'000; ///< Milliseconds: the engine starts processes.

    void _write(const QString &name, const QByteArray &data) const;
    QUrl _url(const QString &name) const { return QUrl::fromLocalFile(m_folder->filePath(name)); }
    void _load(const QUrl &url);
    void _loadHtml(const QString &html);
    QColor _colour() const;
    bool _messageIsShown() const;

    platform::LinuxWebViews m_views;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<platform::WebView> m_view;
    QList<QUrl> m_asked;
    std::function<bool(const QUrl &)> m_allows;
};

/// The main function of a program of such tests.
template <class Test>
int runWebViewTest(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
