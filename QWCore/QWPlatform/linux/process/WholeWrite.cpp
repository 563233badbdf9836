#include "WholeWrite.h"

#include <QFileDevice>

namespace platform
{

QString writeWhole(QFileDevice &file, const QByteArray &data)
{
    for (qint64 written = 0; written < data.size();) {
        // A part that was taken is no error to the file; the next call then hears what stands in the way.
        const qint64 more = file.write(data.constData() + written, data.size() - written);
        if (more <= 0)
            return file.errorString();
        written += more;
    }
    return {};
}

} // namespace platform
