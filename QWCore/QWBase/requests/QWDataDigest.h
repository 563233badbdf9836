#pragma once

#include <QWBase/qwbase_private.h>

#include <QString>

namespace qw
{

/// MD5 of @p data as 32 lower-case hexadecimal digits. For names and check-sums that are agreed on, not for secrets.
QWBASE_SHARED_EXPORT QString md5String(const QByteArray &data);

} // namespace qw
