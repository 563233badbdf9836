#pragma once

#include "AnswerFault.h"
#include "RecorderPresence.h"
#include "RecordingList.h"

#include <QStringList>

/// What the command line of the recorder asks for.
class RecorderOptions
{
public:
    /// Reads @p arguments, the program's name first. False with problem() where they cannot be followed.
    bool read(const QStringList &arguments);

    const QString &problem() const { return m_problem; }
    static QString help();

    bool wantsHelp = false;
    RecorderPresenceSettings presence;
    bool isAnnounced = true;
    quint16 port = 0;
    QString folder; ///< "" for made-up takes.
    int takes = 12;
    double length = 0; ///< Of made-up takes, in seconds; 0: various.
    bool usesProgram = true;
    RecordingList list;
    std::vector<AnswerFault> listFaults;
    std::vector<AnswerFault> downloadFaults;
    int faultyDownload = 0; ///< 0: all.
    int leavesAtDownload = 0;
    QString log;

private:
    QString m_problem;
};
