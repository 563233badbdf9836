#pragma once

#include <QWBase/QWApplication.h>

#include <QTest>

namespace qwtest
{

/// What the off-screen platform says whenever a window comes up; true of it, and no fault of the test.
inline bool isPlatformNoise(const QString &message)
{
    static const QStringList noise{"This plugin does not support raise()",
                                   "This plugin does not support setting window opacity",
                                   "This plugin does not support propagateSizeHints()"};
    return noise.contains(message);
}

/// QTest's own, once the test runs.
inline QtMessageHandler &nextMessageHandler()
{
    static QtMessageHandler next = nullptr;
    return next;
}

inline void passMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!isPlatformNoise(message))
        nextMessageHandler()(type, context, message);
}

/// QTest::qExec() without that noise: QTest installs its handler in qInit() and takes it away in qCleanup().
inline int run(QObject &test, int argc, char **argv)
{
    QTest::qInit(&test, argc, argv);
    nextMessageHandler() = qInstallMessageHandler(passMessage);
    const int failures = QTest::qRun();
    QTest::qCleanup();
    return failures;
}

} // namespace qwtest

/// The main function of a test program that needs the application object. What it launches is up to the test.
#define QW_TEST_MAIN(TestClass)                                                                                        \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        QWApplication application(argc, argv);                                                                         \
        TestClass test;                                                                                                \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return qwtest::run(test, argc, argv);                                                                          \
    }
