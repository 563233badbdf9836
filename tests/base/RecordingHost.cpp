#include "RecordingHost.h"

#include <QWBase/application/ApplicationCategories.h>

namespace
{
void note(const char *category, const char *hook)
{
    const QByteArray entry = QByteArray(category) + ' ' + hook;
    journal().entries += QString::fromUtf8(entry);
    if (journal().whileInHook)
        journal().whileInHook(entry.constData());
}

template <const auto &category>
constexpr qw::ApplicationCategory recordingCategory()
{
    return {
        .name = category,
        .init = [](QWApplication &) { note(category, "init"); },
        .willFinishLaunching = [](QWApplication &) { note(category, "will"); },
        .didFinishLaunching = [](QWApplication &) { note(category, "did"); },
    };
}

constexpr char outer[] = "outer";
constexpr char inner[] = "inner";

bool takeEvent(QWApplication &, QObject *, QEvent *event)
{
    return event->type() == journal().taken;
}
} // namespace

Journal &journal()
{
    static Journal journal;
    return journal;
}

void registerRecordingCategories()
{
    qw::registerCategory(recordingCategory<outer>());
    qw::ApplicationCategory second = recordingCategory<inner>();
    second.sendEvent = takeEvent;
    second.exceptionLeftEvent = [](QWApplication &, const QString &reason) {
        journal().entries += "exception: " + reason;
    };
    qw::registerCategory(second);
}

void RecordingHost::getUrlWithReplyEvent(const QString &url)
{
    journal().entries += url;
}

bool RecordingHost::openFile(const QString &path)
{
    journal().entries += "open " + path;
    return true;
}

void RecordingHost::applicationDidFinishLaunching()
{
    journal().entries += "host";
    if (journal().whileLaunching)
        journal().whileLaunching();
}
