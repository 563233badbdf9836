#pragma once

#include <QWBase/qwbase_export.h>
#include <QWPlatform/foundation/Formatter.h>

/// Numbers of channels as musicians say them: "Mono", "Stereo", "6". Main thread.
class QWBASE_EXPORT QWChannelsFormatter : public platform::Formatter
{
public:
    ~QWChannelsFormatter() override;

    /// "" for what is no number, and for one below 1: how many there are is not known then.
    QString stringForObjectValue(const QVariant &value) const override;
};
