#pragma once

#include <QWBase/QWApplication.h>

#include <functional>

/// What happened to the host of a test, in order, and what the test wants to happen inside it.
struct Journal
{
    QStringList entries;
    std::function<void()> whileLaunching;          ///< Run by the host's own launch work.
    std::function<void(const char *)> whileInHook; ///< Run in each hook of a category, with its name.
    QEvent::Type taken = QEvent::None;             ///< Events of this type are taken away by a category.
};

/// The journal of the running test.
Journal &journal();

/// Registers two categories, "outer" and "inner", that write to the journal.
void registerRecordingCategories();

/// A host that writes its launch, its URLs and its files ("open …") to the journal.
class RecordingHost : public QWApplication
{
public:
    using QWApplication::QWApplication;

    void getUrlWithReplyEvent(const QString &url) override;
    bool openFile(const QString &path) override;

protected:
    void applicationDidFinishLaunching() override;
};
