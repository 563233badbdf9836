#pragma once

#include <QWebEngineUrlRequestInterceptor>

namespace platform
{

/// Lets pages bring nothing from the network: images, frames, styles, fonts. Pages themselves are the policy's matter.
class LocalPartsOnly : public QWebEngineUrlRequestInterceptor
{
public:
    void interceptRequest(QWebEngineUrlRequestInfo &info) override;
};

} // namespace platform
