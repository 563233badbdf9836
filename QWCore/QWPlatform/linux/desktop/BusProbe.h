#pragma once

#include <QByteArray>

#include <chrono>

namespace platform
{

/// Whether the message bus at @p address lets someone in within @p patience: it takes the connection, the sign-in and
/// the first call. The bus library itself waits for more than a minute for one that takes the connection only. An
/// address that is no socket of this machine counts as answering. Blocks.
bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience);

} // namespace platform
