#include <QWPlatform/linux/desktop/LinuxWebViews.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

using namespace platform;

/// In a program of its own, since the engine learns the theme when it starts.
class tst_WebViewTheme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void viewIsDarkBeforeTheFirstPage();
    void pagesLearnThatTheThemeIsDark();
    void pagesWithoutStyleStayLegible();
    void environmentIsAsBefore();

private:
    QColor _colour() const;

    LinuxWebViews m_views;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<WebView> m_view;
};

void tst_WebViewTheme::init()
{
    m_view.reset();
    m_window = std::make_unique<QWidget>();
    m_window->resize(300, 200);
    m_view = m_views.make(m_window.get());
    m_view->widget()->setGeometry(m_window->rect());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

QColor tst_WebViewTheme::_colour() const
{
    const QImage picture = m_view->widget()->grab().toImage();
    return picture.pixelColor(picture.rect().center());
}

void tst_WebViewTheme::viewIsDarkBeforeTheFirstPage()
{
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#1b1c1e"), 20'000);
}

void tst_WebViewTheme::pagesLearnThatTheThemeIsDark()
{
    m_view->loadHtml("<style>body { background: #eeeeff } "
                     "@media (prefers-color-scheme: dark) { body { background: #101018 } }</style>",
                     {});
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor("#101018"), 20'000);
}

void tst_WebViewTheme::pagesWithoutStyleStayLegible()
{
    m_view->loadHtml("<p>black text", {});
    QTRY_COMPARE_WITH_TIMEOUT(_colour(), QColor(Qt::white), 20'000);
}

void tst_WebViewTheme::environmentIsAsBefore()
{
    QVERIFY(!qEnvironmentVariableIsSet("QTWEBENGINE_CHROMIUM_FLAGS"));
}

int main(int argc, char **argv)
{
    qunsetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication application(argc, argv);
    QPalette dark = QApplication::palette();
    dark.setColor(QPalette::Window, QColor("#242528"));
    dark.setColor(QPalette::Base, QColor("#1b1c1e"));
    dark.setColor(QPalette::WindowText, QColor("#e8e8ea"));
    QApplication::setPalette(dark);
    tst_WebViewTheme test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_WebViewTheme.moc"
