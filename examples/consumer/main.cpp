#include <QWBase/QWApplication.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QAction>
#include <QMenu>

#include <cstdio>

namespace
{
/// Validates the VST catalog while it launches, prints its effects menu and ends.
class ConsumerApplication : public QWApplication
{
public:
    using QWApplication::QWApplication;

protected:
    void applicationDidFinishLaunching() override
    {
        QWVSTManager manager;
        manager.validate();
        const auto menu = manager.effectsMenuWithTargetAction(this, "insertEffect:");
        for (const QAction *item : menu->actions())
            std::puts(qPrintable(item->text()));
        quit();
    }
};
} // namespace

int main(int argc, char **argv)
{
    ConsumerApplication application(argc, argv);
    return ConsumerApplication::exec();
}
