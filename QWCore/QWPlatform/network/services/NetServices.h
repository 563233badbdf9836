#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <memory>

namespace platform
{

class NetServiceBrowser;

/// Makes browsers of services. Main thread.
class QWPLATFORM_SHARED_EXPORT NetServices
{
public:
    virtual ~NetServices();

    /// Never null, and quick: what it takes to search is loaded when a search begins.
    virtual std::unique_ptr<NetServiceBrowser> makeBrowser() = 0;
};

} // namespace platform
