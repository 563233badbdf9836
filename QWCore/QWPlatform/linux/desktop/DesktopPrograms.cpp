#include "DesktopPrograms.h"

#include "QWPlatform/foundation/files/RegularFile.h"

#include <QDir>
#include <QDirIterator>
#include <QHash>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace platform
{

namespace
{
using DesktopEntry = QHash<QString, QString>; ///< Key with its "[language]", as written, to value.

constexpr QStringView entryGroup = u"[Desktop Entry]";

QChar unescaped(QChar code)
{
    static const QHash<QChar, QChar> escapes{{u's', u' '}, {u'n', u'\n'}, {u't', u'\t'}, {u'r', u'\r'}};
    return escapes.value(code, code);
}

QString valueFrom(QStringView written)
{
    QString value;
    for (qsizetype i = 0; i < written.size(); ++i) {
        const bool isEscape = written[i] == u'\\' && i + 1 < written.size();
        value += isEscape ? unescaped(written[++i]) : written[i];
    }
    return value;
}

DesktopEntry entryFrom(const QString &text)
{
    DesktopEntry entry;
    bool isInGroup = false;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        if (line.startsWith(u'['))
            isInGroup = line.trimmed() == entryGroup;
        const qsizetype equals = line.indexOf(u'=');
        if (isInGroup && equals > 0 && !line.startsWith(u'#'))
            entry.insert(line.left(equals).trimmed().toString(), valueFrom(line.mid(equals + 1).trimmed()));
    }
    return entry;
}

QByteArray bytesOfEntry(const QString &file)
{
    return readRegularFile(QFile::encodeName(file)).value_or(QByteArray());
}

bool isNamed(const DesktopEntry &entry, const QString &name)
{
    const QString locale = QLocale().name(); // "de_DE"
    const QStringList keys{"Name", "Name[" + locale + ']', "Name[" + locale.section(u'_', 0, 0) + ']'};
    return std::any_of(keys.begin(), keys.end(), [&](const QString &key) { return entry.value(key) == name; });
}

bool isUsable(const DesktopEntry &entry)
{
    return entry.value("Type") == u"Application" && entry.value("Hidden") != u"true" &&
           entry.value("Terminal") != u"true";
}

/// The words of an "Exec" line: quoted ones in one piece.
QStringList wordsOf(const QString &line)
{
    QStringList words;
    QString word;
    bool isQuoted = false;
    bool hasWord = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar character = line[i];
        if (character == u'"') {
            isQuoted = !isQuoted;
            hasWord = true;
        } else if (character == u' ' && !isQuoted) {
            if (std::exchange(hasWord, false))
                words += std::exchange(word, {});
        } else {
            word += isQuoted && character == u'\\' && i + 1 < line.size() ? line[++i] : character;
            hasWord = true;
        }
    }
    return hasWord ? words << word : words;
}

/// What stands for the field code in a word; "" for those that are out of use.
QString fieldValue(QChar code, const DesktopEntry &entry, const QString &path)
{
    switch (code.unicode()) {
    case u'f':
    case u'F':
        return path;
    case u'u':
    case u'U':
        return QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
    case u'c':
        return entry.value("Name");
    case u'%':
        return "%";
    default:
        return {};
    }
}

QString withFields(const QString &word, const DesktopEntry &entry, const QString &path)
{
    QString filled;
    for (qsizetype i = 0; i < word.size(); ++i) {
        const bool isField = word[i] == u'%' && i + 1 < word.size();
        filled += isField ? fieldValue(word[++i], entry, path) : QString(word[i]);
    }
    return filled;
}

QStringList commandFrom(const DesktopEntry &entry, const QString &path)
{
    static const QRegularExpression takesFiles("%[fFuU]");
    const QString line = entry.value("Exec");
    QStringList command;
    for (const QString &word : wordsOf(line))
        if (const QString filled = withFields(word, entry, path); !filled.isEmpty() || word.isEmpty())
            command += filled;
    return line.contains(takesFiles) ? command : QStringList();
}

/// As other entries call it: its place below the folder of entries, with "-" for "/".
QString identifierOf(const QString &file, const QString &folder)
{
    return QDir(folder).relativeFilePath(file).replace(u'/', u'-').chopped(QStringView(u".desktop").size());
}
} // namespace

QStringList commandOfProgram(const QString &name, const QString &path)
{
    QSet<QString> known;
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDirIterator files(folder, {"*.desktop"}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            const QString identifier = identifierOf(file, folder);
            if (known.contains(identifier))
                continue; // the user has one of the same identifier, which takes its place
            known.insert(identifier);
            const DesktopEntry entry = entryFrom(QString::fromUtf8(bytesOfEntry(file)));
            if (isUsable(entry) && (identifier == name || isNamed(entry, name)))
                return commandFrom(entry, path);
        }
    }
    return {};
}

} // namespace platform
