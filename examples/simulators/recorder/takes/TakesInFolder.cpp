#include "TakesInFolder.h"

#include <simulators/recorder/takes/SoundConversion.h>
#include <simulators/recorder/takes/SoundFormats.h>

#include <QCollator>
#include <QDir>
#include <QDirIterator>

#include <algorithm>
#include <memory>
#include <optional>
#include <sndfile.h>

namespace
{
QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator entries(folder, QDir::Files | QDir::Readable, QDirIterator::Subdirectories);
    while (entries.hasNext())
        files += entries.next();
    QCollator collator{QLocale(QLocale::English)}; // the language of no place knows no numbers
    collator.setNumericMode(true);
    std::sort(files.begin(), files.end(), collator);
    return files;
}

QString keywordsOf(SNDFILE *file, const QString &folder)
{
    QStringList words = folder.split('/', Qt::SkipEmptyParts);
    words.removeAll(".");
    for (const int key : {SF_STR_TITLE, SF_STR_ARTIST, SF_STR_ALBUM, SF_STR_GENRE, SF_STR_COMMENT})
        if (const char *const text = sf_get_string(file, key); text && *text)
            words += QString::fromUtf8(text);
    return words.join(' ');
}

int qualityOf(int rate)
{
    return rate >= 44100 ? 0 : rate >= 22050 ? 1 : 2;
}

void readFile(const QFileInfo &file, RecorderTake &take)
{
    const QDateTime born = file.birthTime();
    take.title = file.completeBaseName();
    take.soundFile = file.filePath();
    take.fileSize = file.size();
    take.modificationDate = file.lastModified();
    take.creationDate = born.isValid() ? std::min(born, take.modificationDate) : take.modificationDate;
    take.locked = !file.isWritable();
}

/// None where it is no sound.
std::optional<RecorderTake> takeOf(const QFileInfo &file, const QDir &root, bool withProgram)
{
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE *)> sound(
        sf_open(QFile::encodeName(file.filePath()).constData(), SFM_READ, &info), sf_close);
    if (!sound || info.samplerate <= 0)
        return std::nullopt;
    RecorderTake take;
    readFile(file, take);
    take.length = static_cast<double>(info.frames) / info.samplerate;
    take.channels = info.channels;
    take.quality = qualityOf(info.samplerate);
    take.keywords = keywordsOf(sound.get(), root.relativeFilePath(file.path()));
    take.formats = SoundFormats::offered(
        {.channels = info.channels, .rate = info.samplerate, .isInteger24 = SoundConversion::isInteger24(info.format)},
        withProgram);
    return take;
}
} // namespace

std::vector<RecorderTake> takesInFolder(const QString &path, bool withProgram)
{
    std::vector<RecorderTake> takes;
    for (const QString &file : filesBelow(path)) {
        auto take = takeOf(QFileInfo(file), QDir(path), withProgram);
        if (!take)
            continue;
        take->filename = QString("file-%1").arg(takes.size() + 1, 5, 10, QChar(u'0'));
        takes.push_back(std::move(*take));
    }
    return takes;
}
