#include "UserDefaults.h"

#include "PropertyList.h"
#include "QWPlatform/foundation/files/SettingsFile.h"
#include "QWPlatform/foundation/lists/PropertyListValues.h"

#include <QCoreApplication>
#include <QDebug>
#include <QTimer>

#include <future>
#include <optional>
#include <system_error>

namespace platform
{

namespace
{
constexpr int writeDelay = 500;  ///< Milliseconds from a change to its writing.
constexpr int retryDelay = 2000; ///< Milliseconds until a failed writing is tried again.

/// What the thread that writes can wait.
constexpr LockFile::Patience patient{std::chrono::seconds(5), std::chrono::seconds(10)};

using Written = std::optional<QVariantMap>; ///< What the file holds after a writing; none: it failed.

bool isText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString;
}
} // namespace

class Q_DECL_HIDDEN UserDefaults::Private
{
public:
    QString path;
    QVariantMap registered;
    std::optional<QVariantMap> stored; ///< Once read.
    SettingsFile::Changes pending;     ///< Changes not written yet.
    SettingsFile::Changes underWay;    ///< Those that are just being written.
    std::future<Written> writing;      ///< Valid while a thread is at it.
    int writings = 0;                  ///< Threads begun so far.
    std::atomic<bool> hurry = false;   ///< Tells the thread that the main thread waits for it.
    bool failureTold = false;
    QTimer timer;

    const QVariantMap &storedOnce()
    {
        if (!stored)
            stored = SettingsFile::values(path);
        return *stored;
    }

    /// What a reader sees of @p key, without registered values.
    QVariant own(const QString &key)
    {
        for (const SettingsFile::Changes *changes : {&pending, &underWay})
            if (const auto change = changes->find(key); change != changes->end())
                return change->second.value_or(QVariant());
        return storedOnce().value(key);
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

    /// Begins to write what is pending; on this thread where there is no other to be had.
    void beginWriting()
    {
        if (writing.valid() || pending.empty())
            return; // what is pending is scheduled at the end of the writing
        underWay = std::exchange(pending, {});
        hurry = false;
        try {
            writing = std::async(std::launch::async, [this, number = ++writings] { return writeOnThread(number); });
        } catch (const std::system_error &) {
            endWriting(SettingsFile::apply(path, underWay, LockFile::brief));
        }
    }

    Written writeOnThread(int number)
    {
        Written written = SettingsFile::apply(path, underWay, patient, &hurry);
        const auto end = [this, number] {
            if (writing.valid() && number == writings)
                endWriting(writing.get());
        };
        QMetaObject::invokeMethod(&timer, end, Qt::QueuedConnection);
        return written;
    }

    void takeOver(Written written)
    {
        const SettingsFile::Changes done = std::exchange(underWay, {});
        if (written)
            stored = std::move(written);
        else
            pending.insert(done.begin(), done.end()); // those that were changed again are newer
    }

    void endWriting(Written written)
    {
        const bool isGood = written.has_value();
        takeOver(std::move(written));
        if (!isGood && !failureTold) // once until it works again
            qWarning("The settings in \"%s\" cannot be written now.", qUtf8Printable(path));
        failureTold = !isGood;
        if (!pending.empty())
            schedule(isGood ? writeDelay : retryDelay);
    }

    bool writeNow()
    {
        timer.stop();
        hurry = true;
        if (writing.valid())
            takeOver(writing.get());
        if (!pending.empty()) {
            underWay = std::exchange(pending, {});
            endWriting(SettingsFile::apply(path, underWay, LockFile::brief));
        }
        return pending.empty();
    }
};

UserDefaults::UserDefaults(QString path)
    : d(std::make_unique<Private>())
{
    d->path = std::move(path);
    d->timer.setSingleShot(true);
    QObject::connect(&d->timer, &QTimer::timeout, &d->timer, [this] { d->beginWriting(); });
}

UserDefaults::~UserDefaults()
{
    synchronize();
}

void UserDefaults::registerDefaults(const QVariantMap &values)
{
    d->registered.insert(values);
}

QVariant UserDefaults::object(const QString &key) const
{
    const QVariant value = d->own(key);
    return value.isValid() ? value : d->registered.value(key);
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
    return d->own(key).isValid();
}

void UserDefaults::setObject(const QString &key, const QVariant &value)
{
    if (PropertyList::toXml(QVariantMap{{key, value}}).isEmpty()) // as it will stand in the file
        qWarning("The setting \"%s\" cannot hold this value of type %s.", qUtf8Printable(key), value.typeName());
    else
        d->change(key, value);
}

void UserDefaults::removeObject(const QString &key)
{
    d->change(key, std::nullopt);
}

bool UserDefaults::synchronize()
{
    return d->writeNow();
}

const QString &UserDefaults::path() const
{
    return d->path;
}

} // namespace platform
