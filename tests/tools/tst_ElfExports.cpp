#include "foundation/Mutants.h"

#include <ElfExports.h>

#include <QTemporaryDir>
#include <QTest>

#include <elf.h>

namespace
{
#if defined(__x86_64__)
constexpr Elf64_Half ownMachine = EM_X86_64;
#else
constexpr Elf64_Half ownMachine = EM_AARCH64;
#endif

template <class T>
QByteArray bytesOf(const T &record)
{
    return {reinterpret_cast<const char *>(&record), sizeof record};
}

/// A shared library that has nothing but @p symbols, and @p names, which they refer to.
QByteArray library(const QByteArray &symbols, const QByteArray &names)
{
    Elf64_Ehdr header{};
    std::memcpy(header.e_ident, ELFMAG, SELFMAG);
    header.e_ident[EI_CLASS] = ELFCLASS64;
    header.e_type = ET_DYN;
    header.e_machine = ownMachine;
    header.e_shoff = sizeof header;
    header.e_shnum = 2;
    Elf64_Shdr table{};
    table.sh_type = SHT_DYNSYM;
    table.sh_offset = sizeof header + 2 * sizeof table;
    table.sh_size = static_cast<Elf64_Xword>(symbols.size());
    table.sh_link = 1;
    Elf64_Shdr texts{};
    texts.sh_offset = table.sh_offset + table.sh_size;
    texts.sh_size = static_cast<Elf64_Xword>(names.size());
    return bytesOf(header) + bytesOf(table) + bytesOf(texts) + symbols + names;
}

QByteArray symbol(Elf64_Word name, Elf64_Section section = 1)
{
    Elf64_Sym symbol{};
    symbol.st_name = name;
    symbol.st_shndx = section;
    return bytesOf(symbol);
}
} // namespace

class tst_ElfExports : public QObject
{
    Q_OBJECT

private slots:
    void exportedNamesAreFound_data()
    {
        QTest::addColumn<QByteArray>("symbols");
        QTest::addColumn<QByteArray>("names");
        QTest::addColumn<bool>("found");
        const QByteArray names("\0other\0main\0mainly", 18);
        QTest::newRow("whole name") << symbol(1) + symbol(7) << names << true;
        QTest::newRow("end of a name") << symbol(2) << QByteArray("\0xmain\0", 7) << true;
        QTest::newRow("beginning of a name") << symbol(12) << names << false;
        QTest::newRow("not defined here") << symbol(7, SHN_UNDEF) << names << false;
        QTest::newRow("end of the table") << symbol(7) << names.left(11) << true;
        QTest::newRow("cut off") << symbol(7) << names.left(10) << false;
        QTest::newRow("outside") << symbol(18) + symbol(0xFFFFFFFF) << names << false;
        QTest::newRow("half a symbol") << symbol(7).chopped(1) << names << false;
        QTest::newRow("no names") << symbol(0) << QByteArray() << false;
    }

    void exportedNamesAreFound()
    {
        QFETCH(QByteArray, symbols);
        QFETCH(QByteArray, names);
        QTEST(exports(library(symbols, names)), "found");
    }

    void longTextsAreNotReadForEachSymbol()
    {
        constexpr int symbols = 500'000;
        QByteArray table;
        for (int i = 0; i < symbols; ++i)
            table += symbol(static_cast<Elf64_Word>(i));
        QVERIFY(!exports(library(table, QByteArray(table.size(), 'x')))); // one name without an end: 6 TB to look at
    }

    void damagedFilesAreLibrariesOrNone()
    {
        const QByteArray whole = library(symbol(1) + symbol(7), QByteArray("\0other\0main\0", 12));
        int found = 0;
        forEachMutant(whole, 600, [&](const QByteArray &mutant) { found += exports(mutant) ? 1 : 0; });
        QVERIFY(found > 20 && found < 600);
        for (qsizetype size = 0; size < whole.size() - 1; ++size)
            QVERIFY2(!exports(whole.left(size)), qPrintable(QString::number(size)));
    }

private:
    bool exports(const QByteArray &bytes) const
    {
        QFile file(m_folder.filePath("a.so"));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
            qFatal("The library cannot be written.");
        return exportsOneOf(file.fileName(), {"VSTPluginMain", "main"});
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(tst_ElfExports)
#include "tst_ElfExports.moc"
