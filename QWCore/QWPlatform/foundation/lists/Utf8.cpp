#include "Utf8.h"

#include <QStringConverter>

namespace platform
{

QString textOfUtf8(QByteArrayView utf8)
{
    if (!utf8.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(utf8);
    return QStringDecoder(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom)(utf8);
}

} // namespace platform
