#pragma once

#include <simulators/HttpServer.h>

#include <QTest>

/// Columns "reply" and "fits", with answers as large as @p limit bytes and larger.
inline void addAnswersAround(qsizetype limit)
{
    QTest::addColumn<HttpReply>("reply");
    QTest::addColumn<bool>("fits");
    QTest::newRow("at the limit") << HttpReply::text(QByteArray(limit, 'x')) << true;
    HttpReply above = HttpReply::text(QByteArray(limit + 1, 'x'));
    QTest::newRow("above, announced") << above << false;
    above.sendLength = false;
    QTest::newRow("above, not announced") << above << false;
}
