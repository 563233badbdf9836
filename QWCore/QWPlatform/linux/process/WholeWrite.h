#pragma once

#include <QString>

class QFileDevice;

namespace platform
{

/// Writes all of @p data to an unbuffered file. "" or the system's reason why not, also where only a part found room.
QString writeWhole(QFileDevice &file, const QByteArray &data);

} // namespace platform
