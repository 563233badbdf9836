#pragma once

#include <QWBase/qwbase_export.h>
#include <QWPlatform/foundation/Formatter.h>

/// Sizes of files as the desktop gives them, in the user's language: "12.4 MB", of 1,000,000 bytes each. Main thread.
class QWBASE_EXPORT QWFileSizeFormatter : public platform::Formatter
{
public:
    ~QWFileSizeFormatter() override;

    /// @p value is a number of bytes; "" for what is no number, a negative or an infinite one.
    QString stringForObjectValue(const QVariant &value) const override;
};
