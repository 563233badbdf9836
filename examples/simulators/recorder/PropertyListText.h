#pragma once

#include <QByteArray>
#include <QVariant>

/// Property lists as the recorder writes them. Apart from the product's own writer, so that it meets another's text.
namespace PropertyListText
{

QByteArray begin(); ///< What stands ahead of the root.
QByteArray end();   ///< What stands behind it.

/// The XML of @p value: maps, lists, texts, dates, booleans and numbers, of which any double is written as it is, "nan"
/// too.
QByteArray element(const QVariant &value);

/// A whole list.
QByteArray xml(const QVariant &root);

/// The list @p xml in the binary form; empty when it is none.
QByteArray binary(const QByteArray &xml);

} // namespace PropertyListText
