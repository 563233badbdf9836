#pragma once

#include "Lv2Description.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace platform
{

/// What was read from one bundle.
struct Lv2BundleContents
{
    std::vector<Lv2Description> plugins;
    QString complaint; ///< What the host library said about the bundle's files; "" when it was content.
};

/// What the reader of bundles prints: a greeting, then one answer for each bundle that it was given, in their order. As
/// each is whole, what is there when the reader dies counts.
namespace Lv2Reply
{

QByteArray greeting();
QByteArray answer(const Lv2BundleContents &contents);

/// The answers in @p output, up to the first that is not whole; none when there is no greeting, so that whatever was
/// started was no reader.
std::optional<std::vector<Lv2BundleContents>> parse(const QByteArray &output);

} // namespace Lv2Reply

} // namespace platform
