#pragma once

#include "fakes/FakeSystem.h"

#include <QTest>

inline const QString auDatabase = "~/Library/Application Support/Quorwell/au_db.plist";
inline const QString auHandOff = "~/Library/Application Support/Quorwell/validated_au.plist";
inline const QString vstDatabase = "~/Library/Application Support/Quorwell/vst_db.plist";
inline const QString vstHandOff = "~/Library/Application Support/Quorwell/validated_vst.plist";

/// A validator that accepts every plug-in and leaves @p state at @p path.
inline auto acceptingValidator(const FakeSystem &system, const QString &path, const QVariantMap &state = {})
{
    return [&system, path, state](const platform::ChildProcessRequest &) {
        system.writePropertyList(path, state);
        return platform::ChildProcessResult{.started = true, .exited = true, .status = 0, .output = {}};
    };
}

/// A row for every length, or every @p step-th, that @p whole can be cut short to.
inline void addRowsCutShort(const QByteArray &whole, qsizetype step = 1)
{
    for (qsizetype size = 0; size < whole.size(); size += step)
        QTest::addRow("%d bytes", static_cast<int>(size)) << whole.first(size);
}
