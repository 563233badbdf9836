#include "QWDataDigest.h"

#include <QCryptographicHash>

namespace qw
{

QString md5String(const QByteArray &data)
{
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Md5).toHex());
}

} // namespace qw
