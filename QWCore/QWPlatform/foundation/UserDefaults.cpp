#include "UserDefaults.h"

#include "PropertyList.h"
#include "PropertyListValues.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QThread>
#include <QTimer>

#include <map>
#include <optional>

namespace platform
{

namespace
{
constexpr int writeDelay = 500;    ///< Milliseconds from a change to its writing.
constexpr int retryDelay = 2000;   ///< Milliseconds until a failed writing is tried again.
constexpr int lockPatience = 2000; ///< Milliseconds to wait for other programs that are writing.
constexpr int lockPause = 2;       ///< Milliseconds between two attempts: the others hold it about as long.

/// What the file holds.
struct Stored
{
    enum State
    {
        Good,       ///< A missing file holds nothing, and is good.
        Garbage,    ///< It is there and is no dictionary.
        Unreachable ///< It cannot be read now, which says nothing about its content.
    };

    State state = Good;
    QVariantMap values;
};

Stored readValues(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return {};
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {Stored::Unreachable, {}};
    const QByteArray data = file.readAll();
    if (file.error() != QFile::NoError)
        return {Stored::Unreachable, {}};
    const QVariant list = PropertyList::fromData(data).value_or(QVariant());
    return {list.typeId() == QMetaType::QVariantMap ? Stored::Good : Stored::Garbage, list.toMap()};
}

/// QLockFile itself pauses ever longer, so that a busy neighbour would starve us.
bool acquire(QLockFile &lock)
{
    QDeadlineTimer deadline(lockPatience);
    while (!lock.tryLock(0)) {
        if (lock.error() != QLockFile::LockFailedError || deadline.hasExpired())
            return false;
        QThread::msleep(lockPause);
    }
    return true;
}

/// Moves the file to a free name beside it.
bool setAside(const QString &path)
{
    QString target = path + u".unreadable";
    for (int number = 2; QFileInfo::exists(target); ++number)
        target = path + u".unreadable " + QString::number(number);
    qWarning("The settings in \"%s\" cannot be read; they are kept as \"%s\".", qUtf8Printable(path),
             qUtf8Printable(target));
    return QFile::rename(path, target);
}

bool writeValues(const QString &path, const QVariantMap &values)
{
    const QByteArray xml = PropertyList::toXml(values);
    QSaveFile file(path);
    return !xml.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(xml) == xml.size() && file.commit();
}

bool isText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString;
}
} // namespace

struct UserDefaults::Private
{
    QString path;
    QVariantMap registered;
    std::optional<QVariantMap> stored;                  ///< Once read.
    std::map<QString, std::optional<QVariant>> pending; ///< Changes not written yet; none removes the key.
    QTimer timer;

    const QVariantMap &storedOnce()
    {
        if (!stored)
            stored = readValues(path).values;
        return *stored;
    }

    /// What a reader sees of @p key, without registered values.
    QVariant own(const QString &key)
    {
        const auto change = pending.find(key);
        return change == pending.end() ? storedOnce().value(key) : change->second.value_or(QVariant());
    }

    void change(const QString &key, std::optional<QVariant> value)
    {
        pending.insert_or_assign(key, std::move(value));
        if (!timer.isActive())
            schedule(writeDelay);
    }

    void schedule(int milliseconds)
    {
        if (QCoreApplication::instance()) // else there is no loop: written at the end
            timer.start(milliseconds);
    }

    QVariantMap withPending(QVariantMap values) const
    {
        for (const auto &[key, value] : pending) {
            if (value)
                values.insert(key, *value);
            else
                values.remove(key);
        }
        return values;
    }

    /// Applies the pending changes to what the file holds now.
    bool write()
    {
        QDir().mkpath(QFileInfo(path).path());
        QLockFile lock(path + u".lock");
        if (!acquire(lock))
            return false;
        const Stored before = readValues(path);
        if (before.state == Stored::Unreachable || (before.state == Stored::Garbage && !setAside(path)))
            return false;
        const QVariantMap after = withPending(before.values);
        if (!writeValues(path, after))
            return false;
        stored = after;
        pending.clear();
        return true;
    }
};

UserDefaults::UserDefaults(QString path)
    : m_d(std::make_unique<Private>())
{
    m_d->path = std::move(path);
    m_d->timer.setSingleShot(true);
    QObject::connect(&m_d->timer, &QTimer::timeout, &m_d->timer, [this] { synchronize(); });
}

UserDefaults::~UserDefaults()
{
    synchronize();
}

void UserDefaults::registerDefaults(const QVariantMap &values)
{
    m_d->registered.insert(values);
}

QVariant UserDefaults::object(const QString &key) const
{
    const QVariant value = m_d->own(key);
    return value.isValid() ? value : m_d->registered.value(key);
}

bool UserDefaults::boolean(const QString &key) const
{
    return truthOf(object(key));
}

qlonglong UserDefaults::integer(const QString &key) const
{
    return integerOf(object(key));
}

double UserDefaults::real(const QString &key) const
{
    const QVariant value = object(key);
    return isText(value) || isNumber(value) ? value.toDouble() : 0;
}

QString UserDefaults::string(const QString &key) const
{
    const QVariant value = object(key);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    return isText(value) || isNumber(value) ? value.toString() : QString();
}

bool UserDefaults::isSet(const QString &key) const
{
    return m_d->own(key).isValid();
}

void UserDefaults::setObject(const QString &key, const QVariant &value)
{
    if (PropertyList::toXml(QVariantMap{{key, value}}).isEmpty()) // as it will stand in the file
        qWarning("The setting \"%s\" cannot hold this value of type %s.", qUtf8Printable(key), value.typeName());
    else
        m_d->change(key, value);
}

void UserDefaults::removeObject(const QString &key)
{
    m_d->change(key, std::nullopt);
}

bool UserDefaults::synchronize()
{
    m_d->timer.stop();
    if (m_d->pending.empty())
        return true;
    const bool written = m_d->write();
    if (!written) {
        qWarning("The settings in \"%s\" cannot be written now.", qUtf8Printable(path()));
        m_d->schedule(retryDelay);
    }
    return written;
}

const QString &UserDefaults::path() const
{
    return m_d->path;
}

} // namespace platform
