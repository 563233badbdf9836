#pragma once

#include "RecordingHost.h"

#include "fakes/FakeSystem.h"

#include <QWPlatform/foundation/Bundle.h>

#include <QTimer>

#include <vector>

/// A machine and the command line of one host.
struct HostMachine
{
    explicit HostMachine(const QVariantMap &additionalInfo = {}, std::vector<QByteArray> commandLine = {})
        : m_texts(std::move(commandLine))
    {
        QVariantMap info = FakeSystem::defaultHostInfo();
        info.insert(additionalInfo);
        system.writePropertyList(system.mainBundle().path() + "/Contents/Info.plist", info);
        m_texts.insert(m_texts.begin(), "host");
        for (QByteArray &text : m_texts)
            argv.push_back(text.data());
        argv.push_back(nullptr);
        argc = int(m_texts.size());
    }

    QByteArray log() const { return system.readFile("~/Library/Logs/Quorwell/Test Host.log").value_or(QByteArray()); }

    FakeSystem system;
    platform::SystemScope scope{system};
    int argc = 0;
    std::vector<char *> argv;

private:
    std::vector<QByteArray> m_texts;
};

/// Ends the loop once what is posted now was delivered.
inline void quitSoon()
{
    QTimer::singleShot(0, qApp, [] { QTimer::singleShot(0, qApp, &QCoreApplication::quit); });
}

/// What the journal holds after a launch in which nothing went wrong.
inline const QStringList wholeLaunch{"outer init", "inner init", "outer will", "inner will",
                                     "host",       "inner did",  "outer did"};
