#pragma once

#include <QStringList>
#include <QtGlobal>

/// What is logged while it lives; nothing of it is printed. One at a time.
class LogOfTest
{
public:
    LogOfTest()
    {
        s_lines.clear();
        m_before =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &line) { s_lines += line; });
    }

    ~LogOfTest() { qInstallMessageHandler(m_before); }

    LogOfTest(const LogOfTest &) = delete;
    LogOfTest &operator=(const LogOfTest &) = delete;

    const QStringList &lines() const { return s_lines; }

private:
    static inline QStringList s_lines;
    QtMessageHandler m_before;
};
