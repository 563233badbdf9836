#include "ElfExports.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <optional>
#include <vector>

namespace
{
#if defined(__x86_64__)
constexpr int ownMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr int ownMachine = EM_AARCH64;
#else
constexpr int ownMachine = EM_386;
#endif
constexpr std::size_t mostSections = 65536;
constexpr qint64 largestTable = 64 << 20;

/// Reads records of the file; what lies outside of it is missing.
class ElfFile
{
public:
    explicit ElfFile(const QString &path)
        : m_file(path)
    {
        if (!m_file.open(QIODevice::ReadOnly))
            return;
        const auto header = record<Elf64_Ehdr>(0);
        if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_ident[EI_CLASS] != ELFCLASS64 ||
            header->e_type != ET_DYN || header->e_machine != ownMachine)
            return;
        for (std::size_t i = 0; i < header->e_shnum && i < mostSections; ++i)
            if (const auto section = record<Elf64_Shdr>(header->e_shoff + i * sizeof(Elf64_Shdr)))
                m_sections.push_back(*section);
    }

    /// The first symbol table of the dynamic linker.
    const Elf64_Shdr *symbolTable() const
    {
        for (const Elf64_Shdr &section : m_sections)
            if (section.sh_type == SHT_DYNSYM)
                return &section;
        return nullptr;
    }

    QByteArray contents(const Elf64_Shdr &section)
    {
        const auto size = static_cast<qint64>(section.sh_size);
        if (size <= 0 || size > largestTable || !m_file.seek(static_cast<qint64>(section.sh_offset)))
            return {};
        const QByteArray bytes = m_file.read(size);
        return bytes.size() == size ? bytes : QByteArray();
    }

    /// The names that @p symbols refers to.
    QByteArray names(const Elf64_Shdr &symbols)
    {
        return symbols.sh_link < m_sections.size() ? contents(m_sections[symbols.sh_link]) : QByteArray();
    }

private:
    template <class T>
    std::optional<T> record(quint64 offset)
    {
        T value;
        const bool isRead = m_file.seek(static_cast<qint64>(offset)) &&
                            m_file.read(reinterpret_cast<char *>(&value), sizeof value) == qint64(sizeof value);
        return isRead ? std::optional(value) : std::nullopt;
    }

    QFile m_file;
    std::vector<Elf64_Shdr> m_sections;
};

/// Whether @p name stands at @p offset of @p texts. Looks no further than that: a text may be as long as the file, and
/// each symbol may name it.
bool standsAt(const QByteArray &texts, quint32 offset, const QByteArray &name)
{
    const QByteArrayView rest = QByteArrayView(texts).sliced(std::min<qsizetype>(offset, texts.size()));
    return rest.startsWith(name) && (rest.size() == name.size() || rest[name.size()] == '\0');
}
} // namespace

bool exportsOneOf(const QString &path, const QByteArrayList &names)
{
    ElfFile file(path);
    const Elf64_Shdr *table = file.symbolTable();
    const QByteArray symbols = table ? file.contents(*table) : QByteArray();
    const QByteArray texts = table ? file.names(*table) : QByteArray();
    for (qsizetype at = 0; at + qsizetype(sizeof(Elf64_Sym)) <= symbols.size(); at += sizeof(Elf64_Sym)) {
        Elf64_Sym symbol;
        std::memcpy(&symbol, symbols.constData() + at, sizeof symbol);
        const auto isNamed = [&](const QByteArray &name) { return standsAt(texts, symbol.st_name, name); };
        if (symbol.st_shndx != SHN_UNDEF && std::any_of(names.begin(), names.end(), isNamed))
            return true;
    }
    return false;
}
