#pragma once

#include <QWBase/qwbase_private.h>

#include <QByteArrayView>
#include <QLatin1StringView>

class QString;

namespace qw
{

/// Takes the entries of one state dictionary, so that a record lists them once, whatever becomes of them.
class QWBASE_SHARED_EXPORT StateWriter
{
public:
    virtual ~StateWriter();

    /// Keys are plain ASCII and come in ascending order.
    virtual void setString(QLatin1StringView key, const QString &value) = 0;
    virtual void setBoolean(QLatin1StringView key, bool value) = 0;
    virtual void setInteger(QLatin1StringView key, qint64 value) = 0;
    virtual void setData(QLatin1StringView key, QByteArrayView value) = 0;
};

} // namespace qw
