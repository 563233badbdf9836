// A host that brings its catalogs up to date, prints them and ends. One line a plug-in, with tabs: kind, name or path,
// "ok" or "ignored". Alerts go to standard error.
#include <QWUtilities/plugins/QWAUManager.h>
#include <QWUtilities/plugins/QWVSTManager.h>

#include <QCoreApplication>

#include <cstdio>

namespace
{
void print(const char *kind, const QString &name, const QWCatalogRecord &record)
{
    std::printf("%s\t%s\t%s\n", kind, qUtf8Printable(name), record.ignore() ? "ignored" : "ok");
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QWAUManager units;
    units.validate();
    QWVSTManager bundles;
    bundles.validate();
    for (const auto &record : units.database())
        print("unit", record->name(), *record);
    for (const auto &record : bundles.database())
        print("bundle", record->path(), *record);
}
