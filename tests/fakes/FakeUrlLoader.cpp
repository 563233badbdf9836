#include "FakeUrlLoader.h"

platform::UrlResponse FakeUrlLoader::load(const platform::UrlRequest &request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(request);
    const auto answer = m_answers.constFind(request.url.toString());
    if (m_cancelled || answer == m_answers.constEnd())
        return {.status = 0, .body = {}, .error = QStringLiteral("The server cannot be reached.")};
    return *answer;
}

void FakeUrlLoader::cancelAll()
{
    const std::lock_guard lock(m_mutex);
    m_cancelled = true;
}

void FakeUrlLoader::answer(const QString &url, const QByteArray &body, int status)
{
    const std::lock_guard lock(m_mutex);
    m_answers.insert(url, {.status = status, .body = body, .error = {}});
}

std::vector<platform::UrlRequest> FakeUrlLoader::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

QStringList FakeUrlLoader::requestedUrls() const
{
    QStringList urls;
    for (const platform::UrlRequest &request : requests())
        urls.append(request.url.toString());
    return urls;
}
