#include "RecorderScenes.h"

#include "../app/DemoApplication.h"

#include <QWUtilities/recorder/QWVeskBrowser.h>

#include <simulators/recorder/RecorderSimulator.h>
#include <simulators/recorder/takes/MadeUpTakes.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QToolButton>

#include <memory>

namespace demo
{

namespace
{
constexpr auto servicesVariable = "QW_NET_SERVICES";
constexpr auto busVariable = "DBUS_SYSTEM_BUS_ADDRESS";

/// What the pictures need besides the window; goes after the last one.
struct Recorder
{
    RecorderSimulator simulator;
    QTemporaryDir savedTakes;
};

std::unique_ptr<Recorder> &recorder()
{
    static std::unique_ptr<Recorder> theRecorder;
    return theRecorder;
}

QWidget *browserWindow()
{
    return QWVeskBrowser::sharedInstance().window();
}

template <class Widget>
Widget *outlet(const char *name)
{
    return browserWindow() ? browserWindow()->findChild<Widget *>(name) : nullptr;
}

QAbstractItemView *table()
{
    return outlet<QAbstractItemView>("recordingTable");
}

/// Null while the table says that it is looking.
QWidget *windowThatFoundNobody(DemoApplication &)
{
    const bool isLooking = !table() || table()->accessibleDescription().startsWith("Looking");
    return isLooking ? nullptr : browserWindow();
}

QWidget *windowWithTakes(DemoApplication &)
{
    return table() && table()->model()->rowCount() > 0 ? browserWindow() : nullptr;
}

QWidget *openMenu(DemoApplication &)
{
    return QApplication::activePopupWidget();
}

QWidget *progressSheet(DemoApplication &)
{
    auto *const sheet = browserWindow() ? browserWindow()->findChild<QWidget *>("progressPanel") : nullptr;
    const auto *bar = sheet ? sheet->findChild<QProgressBar *>("progressBar") : nullptr;
    return bar && bar->value() > bar->minimum() ? sheet : nullptr;
}

void selectRows(int first, int last)
{
    QAbstractItemModel &rows = *table()->model();
    const QItemSelection selection(rows.index(first, 0), rows.index(last, rows.columnCount() - 1));
    table()->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

/// Somebody is listed, so the search goes on without a daemon; but no recorder.
void lookInVain(DemoApplication &application)
{
    qputenv(busVariable, "unix:path=/nowhere");
    qputenv(servicesVariable, "Jukebox=127.0.0.1:9");
    application.importFromRecorder(nullptr);
}

void findRecorder(DemoApplication &application)
{
    recorder() = std::make_unique<Recorder>();
    RecorderSimulator &simulator = recorder()->simulator;
    simulator.setTakes(MadeUpTakes::takes({.count = 24, .withProgram = true}));
    for (const char *fault : {"slow=150000", "stalled=1600000"}) // for a rate, and a picture at rest
        simulator.addDownloadFault(*AnswerFault::named(fault));
    if (!simulator.listen())
        return;
    qputenv(servicesVariable, "Vesk on Kim’s Phone=127.0.0.1:" + QByteArray::number(simulator.port()));
    application.importFromRecorder(nullptr);
}

void searchForKitchen(DemoApplication &)
{
    selectRows(0, 0);
    outlet<QLineEdit>("searchField")->insert("kitchen");
}

void openColumns(DemoApplication &)
{
    outlet<QLineEdit>("searchField")->clear();
    for (auto *button : table()->findChildren<QAbstractButton *>())
        if (auto *corner = qobject_cast<QToolButton *>(button); corner && corner->menu())
            corner->menu()->popup(corner->mapToGlobal(QPoint(corner->width(), corner->height())));
}

void closePopup(DemoApplication &)
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
}

void openFormats(DemoApplication &)
{
    selectRows(1, 3);
    outlet<QComboBox>("formatPopup")->showPopup();
}

void closeFormats(DemoApplication &)
{
    outlet<QComboBox>("formatPopup")->hidePopup();
}

QFileDialog *folderChooser()
{
    for (QWidget *window : QApplication::topLevelWidgets())
        if (auto *dialog = qobject_cast<QFileDialog *>(window); dialog && dialog->isVisible())
            return dialog;
    return nullptr;
}

void download(DemoApplication &)
{
    outlet<QComboBox>("formatPopup")->setCurrentText("WAVE");
    QWVeskBrowser::sharedInstance().save();
    if (QFileDialog *chooser = folderChooser()) {
        chooser->setDirectory(recorder()->savedTakes.path());
        chooser->findChild<QLineEdit *>()->setText(recorder()->savedTakes.path());
        static_cast<QDialog *>(chooser)->accept();
    }
}

void closeRecorderBrowser(DemoApplication &)
{
    if (QWidget *window = browserWindow())
        window->close();
    recorder().reset();
    qunsetenv(servicesVariable);
    qunsetenv(busVariable);
}
} // namespace

std::span<const WindowStep::Window> recorderScenes()
{
    using Window = WindowStep::Window;
    static const Window scenes[] = {
        {.name = "recorder-empty", .open = lookInVain, .window = windowThatFoundNobody, .onBackdrop = true},
        {.name = "recorder", .open = findRecorder, .window = windowWithTakes, .onBackdrop = true},
        {.name = "recorder-search", .open = searchForKitchen, .window = windowWithTakes, .onBackdrop = true},
        {.name = "recorder-columns",
         .open = openColumns,
         .window = windowWithTakes,
         .close = closePopup,
         .onBackdrop = true,
         .sheet = openMenu},
        {.name = "recorder-formats",
         .open = openFormats,
         .window = windowWithTakes,
         .close = closeFormats,
         .onBackdrop = true,
         .sheet = openMenu},
        {.name = "recorder-downloading",
         .open = download,
         .window = windowWithTakes,
         .close = closeRecorderBrowser,
         .onBackdrop = true,
         .sheet = progressSheet},
    };
    return scenes;
}

} // namespace demo
