#include "Lv2Reply.h"

#include <QDataStream>
#include <QIODevice>

namespace platform::Lv2Reply
{

namespace
{
constexpr char welcome[] = "QWL1";
constexpr auto replyVersion = QDataStream::Qt_6_4;

QByteArray body(const Lv2BundleContents &contents)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(replyVersion);
    stream << contents.complaint << static_cast<quint32>(contents.plugins.size());
    for (const Lv2Description &plugin : contents.plugins)
        stream << plugin.uri << plugin.name << plugin.author << plugin.type;
    return bytes;
}

std::optional<Lv2BundleContents> contentsOf(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(replyVersion);
    Lv2BundleContents contents;
    quint32 count = 0;
    stream >> contents.complaint >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        Lv2Description &plugin = contents.plugins.emplace_back();
        stream >> plugin.uri >> plugin.name >> plugin.author >> plugin.type;
    }
    return stream.status() == QDataStream::Ok ? std::optional(std::move(contents)) : std::nullopt;
}
} // namespace

QByteArray greeting()
{
    return welcome;
}

QByteArray answer(const Lv2BundleContents &contents)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << body(contents);
    return bytes;
}

std::optional<std::vector<Lv2BundleContents>> parse(const QByteArray &output)
{
    if (!output.startsWith(welcome))
        return std::nullopt;
    std::vector<Lv2BundleContents> answers;
    QDataStream stream(output.mid(greeting().size()));
    for (;;) {
        QByteArray bytes;
        stream >> bytes;
        auto contents = stream.status() == QDataStream::Ok ? contentsOf(bytes) : std::nullopt;
        if (!contents)
            return answers;
        answers.push_back(std::move(*contents));
    }
}

} // namespace platform::Lv2Reply
