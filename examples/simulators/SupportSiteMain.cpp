#include "EndWithParent.h"
#include "SupportSite.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    endWithParent();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("qw-support-site");
    QCommandLineParser options;
    options.setApplicationDescription("Plays the support site on the loopback interface and prints its address.");
    options.addHelpOption();
    options.addOptions({{"port", "Port to listen on; 0 takes a free one.", "number", "0"},
                        {"folder", "Folder whose files are served.", "folder"},
                        {"manual-version", "Version of the newest manual; without it, none is told.", "version"}});
    options.process(application);

    SupportSite site(options.value("folder"));
    site.setManualVersion(options.value("manual-version"));
    if (!site.listen(options.value("port").toUShort())) {
        QTextStream(stderr) << "qw-support-site: cannot listen on port " << options.value("port") << "\n";
        return 1;
    }
    QTextStream(stdout) << site.address() << Qt::endl;
    return QCoreApplication::exec();
}
