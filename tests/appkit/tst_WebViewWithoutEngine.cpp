#include <QWPlatform/appkit/web/WebViewWithoutEngine.h>
#include <QWPlatform/linux/desktop/LinuxWebViews.h>

#include <QApplication>
#include <QFile>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>

#include <optional>

using namespace platform;

class tst_WebViewWithoutEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void standsInWhenTheEngineCannotBeLoaded_data();
    void standsInWhenTheEngineCannotBeLoaded();
    void pagesAndHistory();
    void missingFileFinishesWithFailure();
    void policyIsObeyed();
    void pdfIsWritten();
    void printingIsAnswered_data();
    void printingIsAnswered();
    void parentMayGoFirst();

private:
    void _write(const QString &name, const QByteArray &data) const;
    QUrl _url(const QString &name) const { return QUrl::fromLocalFile(m_folder->filePath(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_WebViewWithoutEngine::_write(const QString &name, const QByteArray &data) const
{
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(data), data.size());
}

void tst_WebViewWithoutEngine::standsInWhenTheEngineCannotBeLoaded_data()
{
    QTest::addColumn<bool>("sharesContexts");
    QTest::newRow("module missing") << true;
    QTest::newRow("application made without shared contexts") << false;
}

void tst_WebViewWithoutEngine::standsInWhenTheEngineCannotBeLoaded()
{
    QFETCH(bool, sharesContexts);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts, sharesContexts);
    LinuxWebViews views(m_folder->filePath("none.so"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Pages are shown without the browser engine: .+"));
    QWidget window;
    const auto view = views.make(&window);
    QVERIFY(qobject_cast<WebViewWithoutEngine *>(view.get()));
    QCOMPARE(view->widget()->parentWidget(), &window);
    QVERIFY(qobject_cast<WebViewWithoutEngine *>(views.make(&window).get())); // tried, and told, once
}

void tst_WebViewWithoutEngine::pagesAndHistory()
{
    WebViewWithoutEngine view(nullptr);
    auto *browser = qobject_cast<QTextBrowser *>(view.widget());
    QSignalSpy finished(&view, &WebView::loadFinished);
    QSignalSpy changed(&view, &WebView::historyChanged);
    _write("first.html", "<p>first <a href='second.html'>next</a></p>");
    _write("second.html", "<p>second</p>");
    view.load(_url("first.html"));
    QCOMPARE(browser->toPlainText(), QString("first next"));
    QVERIFY(!view.canGoBack());
    Q_EMIT browser->anchorClicked(_url("second.html"));
    QCOMPARE(browser->toPlainText(), QString("second"));
    QTRY_COMPARE(finished.size(), 2);
    QVERIFY(finished.back().front().toBool());
    QVERIFY(view.canGoBack());
    view.goBack();
    QCOMPARE(browser->toPlainText(), QString("first next"));
    QVERIFY(view.canGoForward());
    view.goForward();
    QCOMPARE(browser->toPlainText(), QString("second"));
    QVERIFY(!changed.isEmpty());
}

void tst_WebViewWithoutEngine::missingFileFinishesWithFailure()
{
    WebViewWithoutEngine view(nullptr);
    QSignalSpy finished(&view, &WebView::loadFinished);
    view.load(_url("none.html"));
    QCOMPARE(finished.size(), 0); // from the loop, as the engine does it
    QTRY_COMPARE(finished.size(), 1);
    QVERIFY(!finished.front().front().toBool());
}

void tst_WebViewWithoutEngine::policyIsObeyed()
{
    _write("page.html", "<p>page</p>");
    WebViewWithoutEngine view(nullptr);
    auto *browser = qobject_cast<QTextBrowser *>(view.widget());
    QList<QUrl> asked;
    view.setPolicy([&](const QUrl &url) {
        asked += url;
        return url.scheme() == u"data";
    });
    view.loadHtml("<p>hello</p>", {});
    Q_EMIT browser->anchorClicked(_url("page.html"));
    QCOMPARE(asked, QList<QUrl>({QUrl("data:text/html"), _url("page.html")}));
    QCOMPARE(browser->toPlainText(), QString("hello"));
}

void tst_WebViewWithoutEngine::pdfIsWritten()
{
    WebViewWithoutEngine view(nullptr);
    view.loadHtml("<h1>Manual</h1>", {});
    const QString path = m_folder->filePath("Manual.pdf");
    std::optional<bool> ok;
    view.printToPdf(path, [&](bool done) { ok = done; });
    QTRY_VERIFY(ok.has_value());
    QVERIFY(*ok);
    QFile pdf(path);
    QVERIFY(pdf.open(QIODevice::ReadOnly));
    QVERIFY(pdf.readAll().startsWith("%PDF"));

    view.printToPdf(m_folder->filePath("none/Manual.pdf"), [&](bool done) { ok = done; });
    QVERIFY(!*ok);
}

void tst_WebViewWithoutEngine::printingIsAnswered_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("ok");
    QTest::newRow("printed") << "page.pdf" << true;
    QTest::newRow("no such folder") << "none/page.pdf" << false;
}

void tst_WebViewWithoutEngine::printingIsAnswered()
{
    QFETCH(QString, file);
    WebViewWithoutEngine view(nullptr);
    view.loadHtml("<h1>Manual</h1>", {});
    const QSignalSpy ends(&view, &WebView::printFinished);
    view.print();
    auto *const dialog = view.widget()->window()->findChild<QPrintDialog *>();
    QVERIFY(dialog);
    dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
    dialog->printer()->setOutputFileName(m_folder->filePath(file));
    Q_EMIT dialog->QDialog::accepted();
    QCOMPARE(ends.size(), 1);
    QTEST(ends.first().first().toBool(), "ok");
}

void tst_WebViewWithoutEngine::parentMayGoFirst()
{
    auto window = std::make_unique<QWidget>();
    WebViewWithoutEngine view(window.get());
    window.reset();
    QVERIFY(!view.widget());
    view.loadHtml("<p>hello</p>", {});
    view.goBack();
    view.print();
}

QTEST_MAIN(tst_WebViewWithoutEngine)
#include "tst_WebViewWithoutEngine.moc"
