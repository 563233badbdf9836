#pragma once

#include <QWPlatform/foundation/Formatter.h>
#include <QWUtilities/qwutilities_private.h>

/// Lists of format codes, as what a take can be saved as: the uncompressed formats, which every take has, first.
class QWUTILITIES_TEST_EXPORT QWVeskFormatFormatter : public platform::Formatter
{
public:
    ~QWVeskFormatFormatter() override;

    /// @p value is a list of texts; "" for anything else. An empty list gives "AIFF, WAVE, CAF".
    QString stringForObjectValue(const QVariant &value) const override;
};
