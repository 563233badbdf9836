#pragma once

#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>

#include <clocale>

/// Makes German the locale of C and Qt for its life: decimal commas everywhere. The C locale is compiled for the
/// occasion where the machine has none.
class GermanLocale
{
public:
    GermanLocale()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        if (setlocale(LC_ALL, "de_DE.UTF-8"))
            return;
        QProcess::execute("localedef", {"-i", "de_DE", "-f", "UTF-8", m_folder.filePath("de_DE.UTF-8")});
        qputenv("LOCPATH", QFile::encodeName(m_folder.path()));
        setlocale(LC_ALL, "de_DE.UTF-8");
    }

    ~GermanLocale()
    {
        setlocale(LC_ALL, "C.UTF-8");
        qunsetenv("LOCPATH");
        QLocale::setDefault(QLocale::c());
    }

    GermanLocale(const GermanLocale &) = delete;
    GermanLocale &operator=(const GermanLocale &) = delete;

    /// False where the machine cannot make the C locale.
    bool isComplete() const { return *localeconv()->decimal_point == ','; }

private:
    QTemporaryDir m_folder;
};
