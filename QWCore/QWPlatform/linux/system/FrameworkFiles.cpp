#include "FrameworkFiles.h"

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace platform::FrameworkFiles
{

QString beside(const QString &name)
{
    static const char inThisLibrary = 0;
    Dl_info info{};
    if (!::dladdr(&inThisLibrary, &info))
        return {};
    const QString library = QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath();
    return QFileInfo(library).path() + '/' + name;
}

} // namespace platform::FrameworkFiles
