#pragma once

#include <QWBase/QWApplication.h>

#include <QTest>

/// The main function of a test program that needs the application object. What it launches is up to the test.
#define QW_TEST_MAIN(TestClass)                                                                                        \
    int main(int argc, char **argv)                                                                                    \
    {                                                                                                                  \
        QWApplication application(argc, argv);                                                                         \
        TestClass test;                                                                                                \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
