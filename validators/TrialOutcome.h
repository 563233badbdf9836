#pragma once

#include <QString>
#include <QVariantMap>

/// How a trial ended whose process lived to tell.
struct TrialOutcome
{
    QVariantMap state{}; ///< The plug-in's state dictionary, for the host.
    QString error{};     ///< What was wrong; "" when nothing was.
    bool isFinal = true; ///< False: with more patience nothing may be wrong.
};
