#include "TrialPlace.h"

#include <QFile>
#include <QTemporaryFile>

#include <filesystem>
#include <system_error>

namespace qw
{

namespace
{
constexpr qsizetype testSize = 64 * 1024; ///< A disk with less room than this is as good as full.

QString whyNoFolder(const std::filesystem::path &folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return error ? QString::fromStdString(error.message()) : QString();
}
} // namespace

QString whyNoHandOffFits(const QString &handOff)
{
    const std::filesystem::path path(QFile::encodeName(handOff).toStdString());
    if (const QString why = whyNoFolder(path.parent_path()); !why.isEmpty())
        return why;
    // Real bytes: a full disk still makes empty files.
    QTemporaryFile file(handOff + QStringLiteral(".XXXXXX"));
    const bool fits = file.open() && file.write(QByteArray(testSize, ' ')) == testSize && file.flush();
    return fits ? QString() : file.errorString();
}

} // namespace qw
