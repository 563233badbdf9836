#pragma once

#include "RecorderTools.h"

#include <QWUtilities/recorder/browse/DownloadQueue.h>

#include <QWPlatform/appkit/FilePanels.h>
#include <QWPlatform/foundation/Bundle.h>

#include <QTest>

/// A browser that wires the queue as the window does; its sheet is what it notes.
class QueueBrowser : public qw::RecorderBrowser, public qw::DownloadQueueView
{
public:
    bool recordingUpdateProgress(QWVeskRecording &recording, float fraction) override
    {
        return queue.recordingUpdateProgress(recording, fraction);
    }

    void recordingDidFinishDownloading(QWVeskRecording &recording) override
    {
        queue.recordingDidFinishDownloading(recording);
    }

    void recordingDidStopDownloading(QWVeskRecording &recording) override
    {
        queue.recordingDidStopDownloading(recording);
    }

    void recordingDidFailDownloading(QWVeskRecording &recording, const QString &reason) override
    {
        queue.recordingDidFailDownloading(recording, reason);
    }

    Recordings selectedRecordings() const override { return selected; }
    QString selectedFormatTitle() const override { return formatTitle; }
    bool opensAfterSave() const override { return opens; }
    void beginProgressSheet() override { ++sheets; }
    void endProgressSheet() override { --sheets; }
    void setWindowCanHide(bool can) override { canHide = can; }
    void setProgressText(const QString &text) override { texts.append(text); }
    void setProgress(double fraction) override { progress.push_back(fraction); }
    void setProgressDetails(const qw::DownloadProgress &newDetails) override { details.push_back(newDetails); }
    void showFailure(const QString &line) override { failureLines.append(line); }
    void showFailures(const std::vector<qw::FailedDownload> &failures) override
    {
        for (const qw::FailedDownload &failure : failures)
            failedTitles.append(failure.recording->title());
    }

    Recordings selected;
    QString formatTitle = "WAVE";
    bool opens = false;
    int sheets = 0;
    bool canHide = true;
    QStringList texts;
    std::vector<double> progress;
    std::vector<qw::DownloadProgress> details;
    QStringList failureLines;
    QStringList failedTitles;
    qw::DownloadQueue queue{*this};
};

inline QVariantMap titled(const QString &title)
{
    return {{"title", title}, {"filename", title.toLower()}};
}

/// A queue with three takes, "A", "B" and "C", and a folder to save them in.
class DownloadQueueTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void init()
    {
        m_system = std::make_unique<FakeSystem>();
        m_scope = std::make_unique<platform::SystemScope>(*m_system);
        m_system->makeDirectory("~/Music");
        m_browser = std::make_unique<QueueBrowser>();
        select({titled("A"), titled("B"), titled("C")});
    }

    void cleanup()
    {
        m_browser.reset();
        m_device.reset();
        m_scope.reset();
        m_system.reset();
    }

protected:
    qw::DownloadQueue &queue() { return m_browser->queue; }
    FakeUrlDownloads &downloads() { return m_system->urlDownloads; }
    QString folder() const { return m_system->real("~/Music"); }

    void select(const QVariantList &entries)
    {
        m_device = recordertest::loadedDevice(*m_system, *m_browser, entries);
        m_browser->selected = m_device->recordings();
    }

    /// A host with more in its Info.plist.
    void restart(const QVariantMap &info)
    {
        m_browser.reset();
        m_device.reset();
        QVariantMap all = FakeSystem::defaultHostInfo();
        all.insert(info);
        m_system->writePropertyList(m_system->mainBundle().path() + "/Contents/Info.plist", all);
        m_browser = std::make_unique<QueueBrowser>();
        select({titled("A")});
    }

    void begin()
    {
        queue().save();
        m_system->filePanels.endOpen(platform::FilePanels::OK, {folder()});
    }

    void finish()
    {
        downloads().respond(1);
        downloads().receive("1");
        downloads().finish();
    }

    std::unique_ptr<FakeSystem> m_system;
    std::unique_ptr<platform::SystemScope> m_scope;
    std::unique_ptr<QueueBrowser> m_browser;
    std::shared_ptr<QWVeskDevice> m_device;
};
